#include "capture/Database.h"

#include "capture/Utf8.h"
#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

#include <sqlite3.h>

#include <string>

namespace orlimo {

namespace {

/// The text in a column of the present row: up to its first NUL, ill-formed parts replaced.
std::optional<std::string> columnText(sqlite3_stmt* statement, int column)
{
    const auto* const text = sqlite3_column_text(statement, column);
    if (text == nullptr) {
        return std::nullopt;
    }
    return repairedUtf8(reinterpret_cast<const char*>(text));
}

/// Ends the read transaction of `connection` where it outlives its statement. A step that meets
/// another program's lock leaves its statement running: that one holds no lock then, but keeps the
/// transaction of the next statement from ending. Inside a transaction it can be stepped on to its
/// end, for which no lock is needed any more.
void endReadTransaction(sqlite3* connection)
{
    sqlite3_stmt* statement = nullptr;
    while (sqlite3_txn_state(connection, nullptr) > SQLITE_TXN_NONE &&
           // The latest comes first, so that a long run's many statements are not looked through.
           (statement = sqlite3_next_stmt(connection, statement)) != nullptr)
    {
        // A step of one that has ended would run it anew.
        while (sqlite3_stmt_busy(statement) != 0 && sqlite3_step(statement) == SQLITE_ROW) {
        }
    }
}

} // namespace

Database&
Database::shared(const std::function<std::optional<std::filesystem::path>()>& libraryFolder)
{
    static auto* const reader = new Database(libraryFolder());
    return *reader;
}

Database::Database(const std::optional<std::filesystem::path>& libraryFolder)
{
    writeLogLine("Database init");
    db = openDatabase(libraryFolder);
}

Database::~Database()
{
    (void)sqlite3_close(db);
}

sqlite3* Database::openDatabase(const std::optional<std::filesystem::path>& libraryFolder)
{
    const auto store =
        libraryFolder ? std::optional(*libraryFolder / "Messages/chat.db") : std::nullopt;
    const int result = sqlite3_open_v2(
        store ? store->c_str() : nullptr, &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (result != SQLITE_OK) {
        const char* const error = sqlite3_errmsg(db);
        writeLogLine(
            std::string("database connection:  ") + (error != nullptr ? error : "Unknown Error"));
        // The failed connection is left as it is; the process opens one only.
        return nullptr;
    }
    writeLogLine("database connected!!");
    return db;
}

std::vector<Msg> Database::fetchMessages(std::int64_t limit)
{
    const std::string query =
        "SELECT rowid, text, HEX(attributedBody), attributedBody FROM message "
        "ORDER BY date DESC LIMIT " +
        std::to_string(limit);
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare(db, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        const char* const error = sqlite3_errmsg(db);
        if (error == nullptr) {
            fatalStop("SQLite does not say why a statement cannot be compiled");
        }
        writeLogLine(std::string("error preparing fetch limit : v1") + error);
        return {};
    }
    std::vector<Msg> messages;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        messages.push_back({
            .rowid = sqlite3_column_int(statement, 0),
            .text = columnText(statement, 1),
            .attributedBody = columnText(statement, 2),
        });
    }
    // The statement is not finalised: it belongs to the connection until the process ends.
    endReadTransaction(db);
    return messages;
}

} // namespace orlimo
