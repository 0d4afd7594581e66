#include "tests/capture/stores/SqliteMemoryLimit.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace orlimo {

namespace {

/// Must be configured before the first use.
[[maybe_unused]] const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 1);

} // namespace

bool sqliteTracksMemory()
{
    void* const some = sqlite3_malloc(1);
    const bool counts = sqlite3_memory_used() > 0;
    sqlite3_free(some);
    return counts;
}

void writeStoreForMemoryLimit(const std::filesystem::path& libraryFolder)
{
    const auto file = libraryFolder / "Messages/chat.db";
    std::filesystem::create_directories(file.parent_path());
    sqlite3* connection = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
    constexpr const char* sql =
        "PRAGMA encoding = 'UTF-16le';"
        "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, text TEXT, attributedBody BLOB, date);"
        "CREATE INDEX message_idx_date ON message (date);"
        "INSERT INTO message VALUES (1, 'older', NULL, 1), (2, NULL, zeroblob(1000000), 2)";
    EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(connection);
}

void limitSqliteMemory()
{
    // The body takes one million bytes, in two columns; its digits take two, and four in UTF-16;
    // to make them UTF-8 again, SQLite asks for eight more.
    sqlite3_hard_heap_limit64(sqlite3_memory_used() + 11'000'000);
}

} // namespace orlimo
