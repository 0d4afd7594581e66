#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace orlimo::sample {

/// Throws std::runtime_error with SQLite's message for the connection's last error.
[[noreturn]] void throwErrorOf(sqlite3* connection);

/// One compiled statement, finalised at destruction. It may be run any number of times.
class Statement
{
public:
    Statement(sqlite3* connection, const std::string& sql);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    /// Binds the next parameter. What is bound must outlive the statement's run.
    Statement& bind(std::int64_t value);
    Statement& bind(const std::optional<std::string>& text);
    Statement& bind(const std::optional<std::vector<std::uint8_t>>& bytes);

    /// Runs the statement to its end and clears its bindings.
    void run();

    /// The same, and returns the first integer of its result.
    std::int64_t integer();

private:
    void check(int result);

    sqlite3* db;
    sqlite3_stmt* statement = nullptr;
    int parameter = 0;
};

} // namespace orlimo::sample
