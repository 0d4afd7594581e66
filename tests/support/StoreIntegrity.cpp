#include "tests/support/StoreIntegrity.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace orlimo {

namespace {

/// The values of the first column that `sql` yields, one after the other.
std::string queryResult(const std::filesystem::path& store, const char* sql)
{
    sqlite3* connection = nullptr;
    EXPECT_EQ(
        sqlite3_open_v2(store.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    std::string result;
    const auto keep = [](void* text, int, char** values, char**) {
        *static_cast<std::string*>(text) += values[0];
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(connection, sql, keep, &result, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_close(connection), SQLITE_OK);
    return result;
}

} // namespace

std::string integrityOf(const std::filesystem::path& store)
{
    return queryResult(store, "PRAGMA integrity_check");
}

int messagesIn(const std::filesystem::path& store)
{
    const std::string number = queryResult(store, "SELECT count(*) FROM message");
    return number.empty() ? -1 : std::stoi(number);
}

} // namespace orlimo
