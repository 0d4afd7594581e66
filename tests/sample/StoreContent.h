#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo::sample {

/// A message store as another reader sees it. Every failure is a test failure.
class StoreContent
{
public:
    explicit StoreContent(const std::filesystem::path& store)
    {
        EXPECT_EQ(
            sqlite3_open_v2(store.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    }
    StoreContent(const StoreContent&) = delete;
    StoreContent& operator=(const StoreContent&) = delete;
    ~StoreContent() { EXPECT_EQ(sqlite3_close(connection), SQLITE_OK); }

    /// One column of each row that the query returns, as text; "NULL" for no value.
    [[nodiscard]] std::vector<std::string> column(const std::string& query, int index = 0) const
    {
        std::vector<std::string> values;
        sqlite3_stmt* row = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(connection, query.c_str(), -1, &row, nullptr), SQLITE_OK)
            << query << ": " << sqlite3_errmsg(connection);
        while (sqlite3_step(row) == SQLITE_ROW) {
            const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(row, index));
            const auto length = static_cast<std::size_t>(sqlite3_column_bytes(row, index));
            const bool isNull = sqlite3_column_type(row, index) == SQLITE_NULL;
            values.push_back(isNull ? "NULL" : std::string(bytes == nullptr ? "" : bytes, length));
        }
        EXPECT_EQ(sqlite3_finalize(row), SQLITE_OK) << query;
        return values;
    }

    /// The first column of the one row as a number.
    [[nodiscard]] long long number(const std::string& query) const
    {
        const auto values = column(query);
        EXPECT_EQ(values.size(), 1U) << query;
        return values.empty() ? -1 : std::stoll(values.front());
    }

private:
    sqlite3* connection = nullptr;
};

/// The write-ahead log of a store.
[[nodiscard]] inline std::filesystem::path logOf(const std::filesystem::path& store)
{
    return store.string() + "-wal";
}

} // namespace orlimo::sample
