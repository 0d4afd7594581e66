#include "tests/fuzz/LiveStore.h"

#include "tests/capture/stores/OpenedConnections.h"

#include <sqlite3.h>

#include <stdexcept>

namespace orlimo {

namespace {

/// How often the reader is used before its statements are freed.
constexpr int usesUntilFreed = 50;

void expect(bool success, const std::string& what)
{
    if (!success) {
        throw std::runtime_error(what);
    }
}

void run(sqlite3_stmt* statement)
{
    const int result = sqlite3_step(statement);
    expect(result == SQLITE_DONE || result == SQLITE_ROW, sqlite3_sql(statement));
    expect(sqlite3_reset(statement) == SQLITE_OK, sqlite3_sql(statement));
}

/// Binds one value to the parameter `index`; what it refers to outlives the statement's run.
struct Binding
{
    sqlite3_stmt* statement;
    int index;

    int operator()(StoredRow::Null /*null*/) const { return sqlite3_bind_null(statement, index); }
    int operator()(const StoredRow::Text& text) const
    {
        return sqlite3_bind_text64(
            statement, index, text.bytes.data(), text.bytes.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int operator()(const StoredRow::Blob& blob) const
    {
        return blob.bytes.empty()
                   ? sqlite3_bind_zeroblob(statement, index, 0)
                   : sqlite3_bind_blob64(
                         statement, index, blob.bytes.data(), blob.bytes.size(), SQLITE_STATIC);
    }
    int operator()(std::int64_t number) const
    {
        return sqlite3_bind_int64(statement, index, number);
    }
};

} // namespace

LiveStore::LiveStore()
{
    const auto store = library.path() / "Messages/chat.db";
    std::filesystem::create_directory(store.parent_path());
    expect(sqlite3_open(store.c_str(), &writing) == SQLITE_OK, store.string());
    constexpr const char* preparation =
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = OFF;"
        "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, text TEXT, attributedBody BLOB,"
        " date INTEGER);"
        "CREATE INDEX message_idx_date ON message (date);";
    expect(sqlite3_exec(writing, preparation, nullptr, nullptr, nullptr) == SQLITE_OK, preparation);
    begin = compiled("BEGIN IMMEDIATE");
    erase = compiled("DELETE FROM message");
    insertion = compiled("INSERT INTO message (text, attributedBody, date) VALUES (?, ?, ?)");
    commit = compiled("COMMIT");
    const OpenedConnections opened;
    reader = std::make_unique<Database>(library.path());
    reading = opened.only();
}

std::filesystem::path LiveStore::log() const
{
    return library.path() / "Messages/chat.db-wal";
}

Database& LiveStore::database()
{
    if (++uses % usesUntilFreed == 0) {
        finaliseStatements(reading);
    }
    return *reader;
}

void LiveStore::replaceRows(const std::vector<StoredRow>& rows)
{
    run(begin);
    run(erase);
    for (const StoredRow& row : rows) {
        const StoredRow::Cell date =
            row.date ? StoredRow::Cell(*row.date) : StoredRow::Cell(StoredRow::Null());
        expect(std::visit(Binding{insertion, 1}, row.text) == SQLITE_OK, "text");
        expect(std::visit(Binding{insertion, 2}, row.body) == SQLITE_OK, "body");
        expect(std::visit(Binding{insertion, 3}, date) == SQLITE_OK, "date");
        run(insertion);
    }
    run(commit);
}

sqlite3_stmt* LiveStore::compiled(const std::string& sql) const
{
    sqlite3_stmt* statement = nullptr;
    expect(sqlite3_prepare_v2(writing, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK, sql);
    return statement;
}

} // namespace orlimo
