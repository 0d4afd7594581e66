#pragma once

#include "capture/Msg.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

struct sqlite3;

namespace orlimo {

/// Reads messages from the store, the SQLite database "Messages/chat.db" in a Library folder. Holds
/// one connection, opened at construction and never reopened; runs one query and writes nothing.
/// Main thread.
class Database
{
public:
    /// The one reader of the user's own store, opened on first use in the folder that
    /// `libraryFolder` returns; later calls do not call it. Safe against concurrent first use;
    /// never destroyed, as closing the last connection would make SQLite move the log into the
    /// store.
    static Database&
    shared(const std::function<std::optional<std::filesystem::path>()>& libraryFolder);

    /// Opens the store in `libraryFolder`; a failure is logged and final. Without a folder SQLite
    /// opens a database without a name.
    explicit Database(const std::optional<std::filesystem::path>& libraryFolder);

    /// Closes the connection if nothing was fetched: the statements of fetches keep it open.
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The newest messages, newest first, at most `limit` of them. Empty, with a line in the log,
    /// if the query cannot be compiled; the rows before the error if reading fails later. The
    /// compiled statement stays allocated on the connection; no transaction and no lock on the
    /// store remains.
    [[nodiscard]] std::vector<Msg> fetchMessages(std::int64_t limit);

private:
    sqlite3* openDatabase(const std::optional<std::filesystem::path>& libraryFolder);

    sqlite3* db = nullptr;
};

} // namespace orlimo
