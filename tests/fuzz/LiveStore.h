#pragma once

#include "capture/Database.h"
#include "tests/fuzz/StoredRow.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace orlimo {

/// A message store in a temporary folder, written by one connection and read by the program's,
/// whose rows can be replaced repeatedly. Lives until the process ends, as the program's connection
/// does.
class LiveStore
{
public:
    LiveStore();
    LiveStore(const LiveStore&) = delete;
    LiveStore& operator=(const LiveStore&) = delete;

    [[nodiscard]] std::filesystem::path log() const;

    /// The program's reader. Its leftover statements are freed at intervals.
    [[nodiscard]] Database& database();

    /// Commits `rows`, in their order, in place of the previous ones.
    void replaceRows(const std::vector<StoredRow>& rows);

private:
    [[nodiscard]] sqlite3_stmt* compiled(const std::string& sql) const;

    TemporaryFolder library;
    sqlite3* writing = nullptr;
    sqlite3_stmt* begin = nullptr;
    sqlite3_stmt* erase = nullptr;
    sqlite3_stmt* insertion = nullptr;
    sqlite3_stmt* commit = nullptr;
    sqlite3* reading = nullptr;
    std::unique_ptr<Database> reader;
    int uses = 0;
};

} // namespace orlimo
