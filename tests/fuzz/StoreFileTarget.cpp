#include "capture/Database.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/fuzz/FatalStopException.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/FuzzerFeedback.h"
#include "tests/fuzz/LoggedLines.h"
#include "tests/fuzz/Mismatch.h"
#include "tests/fuzz/Statements.h"
#include "tests/fuzz/StoreOnDisk.h"

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orlimo {

/// Shown when messages differ.
void PrintTo(const Msg& message, std::ostream* stream)
{
    *stream << "message " << message.rowid << " with text " << testing::PrintToString(message.text)
            << " and body " << testing::PrintToString(message.attributedBody);
}

namespace {

using Lines = std::vector<std::string>;

/// How many messages the program asks for.
constexpr std::int64_t limit = 10;

/// A store may hold a view instead of a table, and so a program: what runs longer than this many
/// instructions is interrupted. Such a store hangs every reader.
constexpr int maxInstructions = 200'000;

/// For the same reason. A store that asks for more cannot be judged, for nothing says where memory
/// runs out for it.
constexpr std::int64_t maxMemory = 50'000'000;
constexpr std::int64_t memoryThreshold = 10'000'000;

/// Keeps a connection from running without end.
class ResourceLimits
{
public:
    explicit ResourceLimits(sqlite3* connection)
    {
        sqlite3_hard_heap_limit64(maxMemory);
        (void)sqlite3_memory_highwater(1);
        sqlite3_progress_handler(
            connection, maxInstructions, &ResourceLimits::onInstructionLimit, this);
    }

    /// Whether it has run out, so that what was read is not all that there is.
    [[nodiscard]] bool isExhausted() const
    {
        return exhausted || sqlite3_memory_highwater(0) > memoryThreshold;
    }

private:
    static int onInstructionLimit(void* self)
    {
        static_cast<ResourceLimits*>(self)->exhausted = true;
        return 1;
    }

    bool exhausted = false;
};

std::optional<std::string> plainText(sqlite3_stmt* row, int column)
{
    if (sqlite3_column_type(row, column) == SQLITE_NULL) {
        return std::nullopt;
    }
    const auto* const start = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    const std::string whole(start, static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
    return referenceRepaired(whole.substr(0, whole.find('\0')));
}

std::string plainBody(sqlite3_stmt* row, int column)
{
    const auto* const start = static_cast<const char*>(sqlite3_column_blob(row, column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
    return start == nullptr ? std::string() : asHexadecimal({start, length});
}

std::int64_t cutToThirtyTwoBits(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value) & 0xFFFFFFFFU);
}

/// What the store yields: a second implementation, kept plain on purpose. Absent when SQLite does
/// not understand the query.
std::optional<std::vector<Msg>> referenceReading(sqlite3* connection)
{
    sqlite3_stmt* row = nullptr;
    constexpr const char* query =
        "SELECT rowid, text, attributedBody FROM message ORDER BY date DESC LIMIT 10";
    if (sqlite3_prepare_v2(connection, query, -1, &row, nullptr) != SQLITE_OK) {
        return std::nullopt;
    }
    std::vector<Msg> messages;
    while (sqlite3_step(row) == SQLITE_ROW) {
        messages.push_back({
            .rowid = cutToThirtyTwoBits(sqlite3_column_int64(row, 0)),
            .text = plainText(row, 1),
            .attributedBody = plainBody(row, 2),
        });
    }
    sqlite3_finalize(row);
    return messages;
}

/// Tells the fuzzer which way SQLite went.
void reportOutcome(sqlite3* connection, const std::vector<Msg>& messages)
{
    feedback::reportFeature(0, static_cast<std::uint64_t>(sqlite3_extended_errcode(connection)));
    feedback::reportFeature(1, messages.size());
    for (const Msg& message : messages) {
        feedback::reportMagnitude(2, message.text ? message.text->size() + 1 : 0);
        feedback::reportMagnitude(3, message.attributedBody.value_or("").size());
        feedback::reportMagnitude(4, static_cast<std::uint64_t>(message.rowid));
    }
    unsigned feature = 5;
    for (const int status :
         {SQLITE_DBSTATUS_CACHE_MISS, SQLITE_DBSTATUS_SCHEMA_USED, SQLITE_DBSTATUS_CACHE_HIT})
    {
        int value = 0;
        int highest = 0;
        (void)sqlite3_db_status(connection, status, &value, &highest, 0);
        feedback::reportMagnitude(feature, static_cast<std::uint64_t>(value));
        ++feature;
    }
    sqlite3_stmt* const statement = sqlite3_next_stmt(connection, nullptr);
    for (const int status :
         {SQLITE_STMTSTATUS_VM_STEP, SQLITE_STMTSTATUS_FULLSCAN_STEP, SQLITE_STMTSTATUS_SORT})
    {
        if (statement != nullptr) {
            feedback::reportMagnitude(
                feature, static_cast<std::uint64_t>(sqlite3_stmt_status(statement, status, 0)));
        }
        ++feature;
    }
}

/// A query that cannot be compiled is logged and yields nothing.
Finding verifyFailure(sqlite3* connection, const Lines& lines, const std::vector<Msg>& messages)
{
    const Lines expected{
        std::string("error preparing fetch limit : v1") + sqlite3_errmsg(connection)};
    if (auto finding = mismatch("log", lines, expected)) {
        return finding;
    }
    return mismatch("messages", messages, std::vector<Msg>());
}

Finding verifyReading(Database& database, sqlite3* connection)
{
    logged::clear();
    const ResourceLimits limits(connection);
    const std::vector<Msg> messages = database.fetchMessages(limit);
    const Lines lines = logged::lines();
    reportOutcome(connection, messages);
    if (!lines.empty()) {
        return verifyFailure(connection, lines, messages);
    }
    const auto expected = referenceReading(connection);
    if (limits.isExhausted()) {
        return std::nullopt;
    }
    return mismatch("messages", std::optional(messages), expected);
}

} // namespace

/// The input is the store, byte for byte; from where a write-ahead log's header stands in it, its
/// log.
Finding checkInput(std::string_view input)
try {
    static StoreOnDisk store;
    store.fill(input);
    logged::clear();
    const OpenedConnections opened;
    Database database(store.libraryFolder());
    const Lines connected{"Database init", "database connected!!"};
    if (auto finding = mismatch("log", logged::lines(), connected)) {
        return finding;
    }
    auto finding = verifyReading(database, opened.only());
    if (!finding && !store.isUnchanged(input)) {
        finding = "the store was written to";
    }
    finaliseStatements(opened.only());
    return finding;
} catch (const FatalStopException& stop) {
    return "a fatal stop: " + stop.reason;
}

} // namespace orlimo
