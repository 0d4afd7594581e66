#pragma once

namespace orlimo {

/// While it lives, SQLite has no words for its errors: `sqlite3_errmsg` answers with a null
/// pointer, which the library's documentation does not exclude. One at a time.
class SqliteWithoutErrorMessages
{
public:
    SqliteWithoutErrorMessages();
    SqliteWithoutErrorMessages(const SqliteWithoutErrorMessages&) = delete;
    SqliteWithoutErrorMessages& operator=(const SqliteWithoutErrorMessages&) = delete;
    ~SqliteWithoutErrorMessages();
};

} // namespace orlimo
