#include "sample/Statement.h"

#include <sqlite3.h>

#include <stdexcept>

namespace orlimo::sample {

void throwErrorOf(sqlite3* connection)
{
    throw std::runtime_error(sqlite3_errmsg(connection));
}

Statement::Statement(sqlite3* connection, const std::string& sql)
    : db(connection)
{
    check(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr));
}

Statement::~Statement()
{
    sqlite3_finalize(statement);
}

Statement& Statement::bind(std::int64_t value)
{
    check(sqlite3_bind_int64(statement, ++parameter, value));
    return *this;
}

Statement& Statement::bind(const std::optional<std::string>& text)
{
    ++parameter;
    if (text) {
        check(sqlite3_bind_text64(
            statement, parameter, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8));
    }
    return *this;
}

Statement& Statement::bind(const std::optional<std::vector<std::uint8_t>>& bytes)
{
    ++parameter;
    if (bytes) {
        check(
            sqlite3_bind_blob64(statement, parameter, bytes->data(), bytes->size(), SQLITE_STATIC));
    }
    return *this;
}

void Statement::run()
{
    (void)integer();
}

std::int64_t Statement::integer()
{
    int result = sqlite3_step(statement);
    const std::int64_t value = result == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : 0;
    while (result == SQLITE_ROW) {
        result = sqlite3_step(statement);
    }
    // A statement that is not reset keeps its tables from being changed. The reset fails as the run
    // did.
    (void)sqlite3_clear_bindings(statement);
    parameter = 0;
    check(sqlite3_reset(statement));
    return value;
}

void Statement::check(int result)
{
    if (result != SQLITE_OK) {
        throwErrorOf(db);
    }
}

} // namespace orlimo::sample
