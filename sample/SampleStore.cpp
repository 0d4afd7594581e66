#include "sample/SampleStore.h"

#include "sample/ArchivedBody.h"
#include "sample/Schema.h"
#include "sample/Statement.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>

namespace orlimo::sample {

namespace {

/// The present time as the store counts it: nanoseconds since the beginning of 2001, UTC.
std::int64_t currentDate()
{
    constexpr std::chrono::sys_days epoch = std::chrono::year(2001) / std::chrono::January / 1;
    const std::chrono::nanoseconds date = std::chrono::system_clock::now() - epoch;
    return date.count();
}

/// Marks a store as created here ("Orli").
constexpr std::int64_t applicationId = 0x4F726C69;

/// Everyday messages without a code. Most are stored as a body only.
SampleMessage everydayMessage(std::int64_t index)
{
    constexpr std::array<std::string_view, 5> texts{
        "On my way",
        "Lunch at noon?",
        "Gr\xC3\xBC\xC3\x9F"
        "e aus K\xC3\xB6ln \xF0\x9F\x98\x80",
        "The train is late again, and nobody says why. I will call you from the station, but do "
        "not wait with dinner; there is bread and cheese in the kitchen.",
        "See you at 7",
    };
    const std::string text(texts[static_cast<std::size_t>(index) % texts.size()]);
    const auto body = archivedBody(text, ArchivedString::mutableString);
    const bool isFromMe = index % 3 == 0;
    constexpr int kinds = 8;
    switch (index % kinds) {
    case 0:
        return {.text = text, .isFromMe = isFromMe};
    case 1:
        return {.text = text, .attributedBody = body, .isFromMe = isFromMe};
    case 2:
        return {
            .attributedBody = archivedBody("\xEF\xBF\xBC", ArchivedString::immutableString),
            .isFromMe = isFromMe,
        };
    default:
        return {.attributedBody = body, .isFromMe = isFromMe};
    }
}

const char* pragmaOf(Synchronous synchronous)
{
    switch (synchronous) {
    case Synchronous::off:
        return "PRAGMA synchronous = OFF";
    case Synchronous::normal:
        return "PRAGMA synchronous = NORMAL";
    case Synchronous::full:
        break;
    }
    return "PRAGMA synchronous = FULL";
}

} // namespace

void SampleStore::Closer::operator()(sqlite3* opened) const
{
    (void)sqlite3_close(opened);
}

SampleStore::SampleStore(const std::filesystem::path& file, Synchronous synchronous)
    : log(file.string() + "-wal")
{
    open(file);
    run("PRAGMA wal_autocheckpoint = 0");
    run(pragmaOf(synchronous));
}

void SampleStore::open(const std::filesystem::path& file)
{
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    connection.reset(opened);
    if (result != SQLITE_OK) {
        throwErrorOf(opened);
    }
    constexpr int busyTimeoutMs = 5000;
    (void)sqlite3_busy_timeout(opened, busyTimeoutMs);
    // Keeps the log even if this is the last connection that closes.
    (void)sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);

    // Nothing is written, not even the journal mode, before it is known that the store is ours.
    if (integer("SELECT count(*) FROM sqlite_master") == 0) {
        run("PRAGMA journal_mode = WAL");
        makeTables();
    } else if (integer("PRAGMA application_id") != applicationId) {
        throw std::runtime_error(file.string() + " is not a sample store");
    }
}

void SampleStore::makeTables()
{
    run("BEGIN IMMEDIATE");
    // Another process may have created them first.
    if (integer("SELECT count(*) FROM sqlite_master") == 0) {
        run(schema);
        run("PRAGMA application_id = " + std::to_string(applicationId));
    }
    commit();
}

std::int64_t SampleStore::append(const SampleMessage& message)
{
    if (isInTransaction()) {
        return insert(message, nextDate());
    }
    // The lock is taken before the newest date is read: a transaction that reads first cannot write
    // after another writer has committed.
    run("BEGIN IMMEDIATE");
    try {
        const std::int64_t row = insert(message, nextDate());
        commit();
        return row;
    } catch (...) {
        if (isInTransaction()) {
            rollback();
        }
        throw;
    }
}

void SampleStore::fill(std::int64_t number)
{
    constexpr std::int64_t second = 1'000'000'000;
    constexpr std::int64_t rowsPerTransaction = 10'000;
    const std::int64_t last = currentDate() - second;
    for (std::int64_t index = 0; index < number; ++index) {
        if (index % rowsPerTransaction == 0) {
            begin();
        }
        insert(everydayMessage(index), last - (number - index) * second);
        if (index % rowsPerTransaction == rowsPerTransaction - 1 || index == number - 1) {
            commit();
        }
    }
}

void SampleStore::begin()
{
    // The writer's lock is taken with the first change, as in a transaction of the real
    // application.
    run("BEGIN");
}

void SampleStore::commit()
{
    run("COMMIT");
}

void SampleStore::rollback()
{
    run("ROLLBACK");
}

void SampleStore::spill()
{
    if (sqlite3_db_cacheflush(connection.get()) != SQLITE_OK) {
        throwErrorOf(connection.get());
    }
}

void SampleStore::truncateLog()
{
    if (integer("PRAGMA wal_checkpoint(TRUNCATE)") != 0) {
        throw std::runtime_error("the log is in use");
    }
}

std::uintmax_t SampleStore::logSize() const
{
    return std::filesystem::file_size(log);
}

void SampleStore::run(const std::string& statements)
{
    if (sqlite3_exec(connection.get(), statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    {
        throwErrorOf(connection.get());
    }
}

bool SampleStore::isInTransaction() const
{
    return sqlite3_get_autocommit(connection.get()) == 0;
}

std::int64_t SampleStore::integer(const char* sql)
{
    return Statement(connection.get(), sql).integer();
}

Statement& SampleStore::prepared(std::optional<Statement>& statement, const char* sql)
{
    if (!statement) {
        statement.emplace(connection.get(), sql);
    }
    return *statement;
}

std::int64_t SampleStore::nextDate()
{
    const std::int64_t newest =
        prepared(newestDate, "SELECT coalesce(max(date), 0) FROM message").integer();
    return std::max(currentDate(), newest + 1);
}

std::int64_t SampleStore::insert(const SampleMessage& message, std::int64_t date)
{
    prepared(
        messageInsertion,
        "INSERT INTO message (guid, text, handle_id, attributedBody, service, account, date, "
        "is_delivered, is_finished, is_from_me) VALUES (upper(hex(randomblob(16))), ?, 1, ?, "
        "'SMS', 'P:+15550199', ?, 1, 1, ?)")
        .bind(message.text)
        .bind(message.attributedBody)
        .bind(date)
        .bind(message.isFromMe ? 1 : 0)
        .run();
    const std::int64_t row = sqlite3_last_insert_rowid(connection.get());
    prepared(
        joinInsertion,
        "INSERT INTO chat_message_join (chat_id, message_id, message_date) VALUES (1, ?, ?)")
        .bind(row)
        .bind(date)
        .run();
    return row;
}

} // namespace orlimo::sample
