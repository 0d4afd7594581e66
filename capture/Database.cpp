#include "capture/Database.h"

#include "capture/Unicode.h"
#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace orlimo {

namespace {

/// The query, but for its limit, and the columns of its result that are read. The last one, the
/// body itself, is selected but not read.
constexpr std::string_view query =
    "SELECT rowid, text, HEX(attributedBody), attributedBody FROM message "
    "ORDER BY date DESC LIMIT ";
constexpr int rowidColumn = 0;
constexpr int textColumn = 1;
constexpr int hexadecimalBodyColumn = 2;

/// The text in a column of the current row: up to its first NUL, ill-formed parts replaced.
std::optional<std::string> columnText(sqlite3_stmt* statement, int column)
{
    const auto* const text = sqlite3_column_text(statement, column);
    if (text == nullptr) {
        return std::nullopt;
    }
    return repairedUtf8(reinterpret_cast<const char*>(text));
}

/// Ends the read transaction of `connection` if it outlives its statement. A step that meets
/// another program's lock leaves its statement running: it then holds no lock, but keeps the
/// transaction of the next statement from ending. Inside a transaction it can be stepped to its
/// end, which needs no further lock.
void endReadTransaction(sqlite3* connection)
{
    sqlite3_stmt* statement = nullptr;
    while (sqlite3_txn_state(connection, nullptr) > SQLITE_TXN_NONE &&
           // The newest statement comes first; the many older ones are not searched.
           (statement = sqlite3_next_stmt(connection, statement)) != nullptr)
    {
        // Stepping a finished statement would restart it.
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
        // The failed connection is not closed; the process opens only one.
        return nullptr;
    }
    writeLogLine("database connected!!");
    return db;
}

std::vector<Msg> Database::fetchMessages(std::int64_t limit)
{
    const std::string limitedQuery = std::string(query) + std::to_string(limit);
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare(db, limitedQuery.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
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
            .rowid = sqlite3_column_int(statement, rowidColumn),
            .text = columnText(statement, textColumn),
            .attributedBody = columnText(statement, hexadecimalBodyColumn),
        });
    }
    // The statement is not finalised: it belongs to the connection until the process ends.
    endReadTransaction(db);
    return messages;
}

} // namespace orlimo
