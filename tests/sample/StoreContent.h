#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct sqlite3;

namespace orlimo::sample {

/// A message store as another reader sees it. Every failure is a test failure.
class StoreContent
{
public:
    explicit StoreContent(const std::filesystem::path& store);
    StoreContent(const StoreContent&) = delete;
    StoreContent& operator=(const StoreContent&) = delete;
    ~StoreContent();

    /// One column of each row that the query returns, as text; "NULL" for no value.
    [[nodiscard]] std::vector<std::string> column(const std::string& query, int index = 0) const;

    /// The first column of the first row as a number.
    [[nodiscard]] long long number(const std::string& query) const;

private:
    sqlite3* connection = nullptr;
};

/// The write-ahead log of a store.
[[nodiscard]] std::filesystem::path logOf(const std::filesystem::path& store);

} // namespace orlimo::sample
