#pragma once

namespace orlimo {

/// While it lives, SQLite has no words for its errors: `sqlite3_errmsg` answers with a null
/// pointer, which the library's documentation does not exclude. One at a time.
class SilentSqlite
{
public:
    SilentSqlite();
    SilentSqlite(const SilentSqlite&) = delete;
    SilentSqlite& operator=(const SilentSqlite&) = delete;
    ~SilentSqlite();
};

} // namespace orlimo
