#include "tests/sample/StoreContent.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace orlimo::sample {

StoreContent::StoreContent(const std::filesystem::path& store)
{
    EXPECT_EQ(
        sqlite3_open_v2(store.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
}

StoreContent::~StoreContent()
{
    EXPECT_EQ(sqlite3_close(connection), SQLITE_OK);
}

std::vector<std::string> StoreContent::column(const std::string& query, int index) const
{
    std::vector<std::string> values;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(connection, query.c_str(), -1, &statement, nullptr), SQLITE_OK)
        << query << ": " << sqlite3_errmsg(connection);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement, index));
        const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
        const bool isNull = sqlite3_column_type(statement, index) == SQLITE_NULL;
        values.push_back(isNull ? "NULL" : std::string(bytes == nullptr ? "" : bytes, length));
    }
    EXPECT_EQ(sqlite3_finalize(statement), SQLITE_OK) << query;
    return values;
}

long long StoreContent::number(const std::string& query) const
{
    const auto values = column(query);
    EXPECT_EQ(values.size(), 1U) << query;
    return values.empty() ? -1 : std::stoll(values.front());
}

std::filesystem::path logOf(const std::filesystem::path& store)
{
    return store.string() + "-wal";
}

} // namespace orlimo::sample
