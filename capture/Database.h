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
/// one connection, opened at construction and never retried; runs one query and writes nothing.
/// Main thread.
class Database
{
public:
    /// The one reader of the user's own store, opened on first use in the folder that
    /// `libraryFolder` returns then; later ones are not asked. Safe against concurrent first use;
    /// never destroyed, for closing the last connection would make SQLite fold the log into the
    /// store.
    static Database&
    shared(const std::function<std::optional<std::filesystem::path>()>& libraryFolder);

    /// Opens the store in `libraryFolder`; a failure is logged and final. With an absent folder
    /// SQLite decides what a store without a name is.
    explicit Database(const std::optional<std::filesystem::path>& libraryFolder);

    /// Closes the connection, as far as SQLite lets it: statements that were fetched from keep it
    /// open.
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The newest messages, newest first, at most `limit` of them. Empty, with a line in the log,
    /// when the store cannot be read; the rows before an error where it strikes later. The compiled
    /// statement stays allocated on the connection; no transaction and no lock on the store stays.
    [[nodiscard]] std::vector<Msg> fetchMessages(std::int64_t limit);

private:
    sqlite3* openDatabase(const std::optional<std::filesystem::path>& libraryFolder);

    sqlite3* db = nullptr;
};

} // namespace orlimo
