#include "tests/support/StoreWriter.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace orlimo {

namespace {

void bindBytes(
    sqlite3_stmt* statement, int index, const std::optional<std::string>& bytes, bool asText)
{
    if (!bytes) {
        return;
    }
    const auto length = static_cast<int>(bytes->size());
    const int result =
        asText ? sqlite3_bind_text(statement, index, bytes->data(), length, SQLITE_STATIC)
               : sqlite3_bind_blob(statement, index, bytes->data(), length, SQLITE_STATIC);
    EXPECT_EQ(result, SQLITE_OK);
}

} // namespace

StoreWriter::StoreWriter(const std::filesystem::path& libraryFolder, Journal journal)
{
    const auto store = libraryFolder / "Messages/chat.db";
    std::filesystem::create_directories(store.parent_path());
    EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK) << store;
    run(journal == Journal::writeAheadLog
            ? "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
            : "PRAGMA journal_mode = DELETE;");
    // Some systems' SQLite cuts a long log by itself.
    run("PRAGMA journal_size_limit = -1;");
    run("CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, text TEXT, "
        "attributedBody BLOB, date INTEGER);"
        "CREATE INDEX message_idx_date ON message (date);");
}

StoreWriter::~StoreWriter()
{
    EXPECT_EQ(sqlite3_close(connection), SQLITE_OK);
}

void StoreWriter::append(const Row& row)
{
    constexpr const char* sql =
        "INSERT INTO message (ROWID, text, attributedBody, date) VALUES (?, ?, ?, ?)";
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection);
    if (row.rowid) {
        EXPECT_EQ(sqlite3_bind_int64(statement, 1, *row.rowid), SQLITE_OK);
    }
    bindBytes(statement, 2, row.text, true);
    bindBytes(statement, 3, row.attributedBody, false);
    lastDate = row.date.value_or(lastDate + 1'000'000'000);
    EXPECT_EQ(sqlite3_bind_int64(statement, 4, lastDate), SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_DONE) << sqlite3_errmsg(connection);
    sqlite3_finalize(statement);
}

void StoreWriter::run(const std::string& sql)
{
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(connection);
}

} // namespace orlimo
