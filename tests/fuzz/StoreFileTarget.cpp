#include "capture/Database.h"
#include "platform/files/UniqueFd.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/ProgramOutcomes.h"
#include "tests/support/TemporaryFolder.h"

#include <sqlite3.h>

#include <array>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

/// Shown when messages differ.
void PrintTo(const Msg& message, std::ostream* stream)
{
    *stream << "message " << message.rowid << " with text " << testing::PrintToString(message.text)
            << " and body " << testing::PrintToString(message.attributedBody);
}

namespace {

using Lines = std::vector<std::string>;

struct Parts
{
    std::string_view store;
    std::string_view log;
};

/// A log begins with one of two numbers, for either byte order of its checksums.
Parts partsOf(std::string_view bytes)
{
    constexpr std::string_view beginning = "\x37\x7F\x06";
    for (std::size_t place = bytes.find(beginning); place != std::string_view::npos;
         place = bytes.find(beginning, place + 1))
    {
        const std::string_view log = bytes.substr(place);
        if (log.size() >= 4 && (log[3] == '\x82' || log[3] == '\x83')) {
            return {bytes.substr(0, place), log};
        }
    }
    return {bytes, {}};
}

void setContent(int descriptor, std::string_view content)
{
    (void)!::pwrite(descriptor, content.data(), content.size(), 0);
    (void)!::ftruncate(descriptor, static_cast<off_t>(content.size()));
}

bool holds(int descriptor, std::string_view content)
{
    std::string present(content.size() + 1, '\0');
    const ssize_t got = ::pread(descriptor, present.data(), present.size(), 0);
    return got >= 0 &&
           std::string_view(present).substr(0, static_cast<std::size_t>(got)) == content;
}

/// A message store in a folder of its own, whose files are given byte for byte.
class StoreOnDisk
{
public:
    [[nodiscard]] const std::filesystem::path& libraryFolder() const { return library.path(); }

    /// Makes the store hold `bytes`: up to the header of a write-ahead log the store itself, from
    /// there on its log. Other files beside the store are removed. No connection may be open.
    void fill(std::string_view bytes);

    /// Whether the store, and its log where there was one, still are what `bytes` made them.
    [[nodiscard]] bool isUnchanged(std::string_view bytes) const;

private:
    TemporaryFolder library;
    std::string file = (makePrivateFolder(library.path() / "Messages") / "chat.db").string();
    std::string log = file + "-wal";
    UniqueFd store{::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
};

void StoreOnDisk::fill(std::string_view bytes)
{
    const Parts parts = partsOf(bytes);
    for (const std::string& other : {log, file + "-shm", file + "-journal"}) {
        (void)::unlink(other.c_str());
    }
    setContent(store.get(), parts.store);
    if (!parts.log.empty()) {
        const UniqueFd descriptor(::open(log.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        setContent(descriptor.get(), parts.log);
    }
}

bool StoreOnDisk::isUnchanged(std::string_view bytes) const
{
    const Parts parts = partsOf(bytes);
    if (!holds(store.get(), parts.store)) {
        return false;
    }
    if (parts.log.empty()) {
        return true;
    }
    // Closing a log's descriptor releases no locks: they are on the shared index.
    const UniqueFd descriptor(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
    return holds(descriptor.get(), parts.log);
}

/// How many messages the program asks for.
constexpr std::int64_t limit = 10;

/// A store may hold a view instead of a table, and so a program: it is interrupted after this many
/// instructions. Such a store hangs every reader.
constexpr int maxInstructions = 200'000;

/// For the same reason. A store that needs more is not judged, as it is unknown where its memory
/// runs out.
constexpr std::int64_t maxMemory = 50'000'000;
constexpr std::int64_t memoryThreshold = 10'000'000;

/// Limits what a connection may use.
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

    /// Whether a limit was reached, so that not everything was read.
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

/// What the store yields, by a second and deliberately simple implementation. Absent if the query
/// cannot be compiled.
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

/// libFuzzer finds these by their section and keeps an input that sets a new one. They represent
/// the progress of SQLite, which is not instrumented.
__attribute__((section("__libfuzzer_extra_counters"), used)) std::array<std::uint8_t, 8192>
    progressCounters{};

void reportFeature(unsigned feature, std::uint64_t value)
{
    progressCounters.at((feature * 509U + value) % progressCounters.size()) = 1;
}

/// Of a quantity only the order of magnitude counts.
void reportMagnitude(unsigned feature, std::size_t quantity)
{
    reportFeature(feature, static_cast<std::uint64_t>(std::bit_width(quantity)));
}

void reportProgress(sqlite3* connection, const std::vector<Msg>& messages)
{
    reportFeature(0, static_cast<std::uint64_t>(sqlite3_extended_errcode(connection)));
    reportFeature(1, messages.size());
    for (const Msg& message : messages) {
        reportMagnitude(2, message.text ? message.text->size() + 1 : 0);
        reportMagnitude(3, message.attributedBody.value_or("").size());
        reportMagnitude(4, static_cast<std::size_t>(message.rowid));
    }
    unsigned feature = 5;
    for (const int status :
         {SQLITE_DBSTATUS_CACHE_MISS, SQLITE_DBSTATUS_SCHEMA_USED, SQLITE_DBSTATUS_CACHE_HIT})
    {
        int value = 0;
        int highest = 0;
        (void)sqlite3_db_status(connection, status, &value, &highest, 0);
        reportMagnitude(feature++, static_cast<std::size_t>(value));
    }
    sqlite3_stmt* const statement = sqlite3_next_stmt(connection, nullptr);
    for (const int status :
         {SQLITE_STMTSTATUS_VM_STEP, SQLITE_STMTSTATUS_FULLSCAN_STEP, SQLITE_STMTSTATUS_SORT})
    {
        const int value = statement != nullptr ? sqlite3_stmt_status(statement, status, 0) : 0;
        reportMagnitude(feature++, static_cast<std::size_t>(value));
    }
}

/// A query that cannot be compiled is logged and yields nothing.
Finding verifyFailure(sqlite3* connection, const Lines& lines, const std::vector<Msg>& messages)
{
    const Lines expected{
        std::string("error preparing fetch limit : v1") + sqlite3_errmsg(connection)};
    return firstOf({
        mismatch("log", lines, expected),
        mismatch("messages", messages, std::vector<Msg>()),
    });
}

Finding verifyReading(Database& database, sqlite3* connection)
{
    logged::clear();
    const ResourceLimits limits(connection);
    const std::vector<Msg> messages = database.fetchMessages(limit);
    const Lines lines = logged::lines();
    reportProgress(connection, messages);
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

/// The input is the store, byte for byte, and from the header of a write-ahead log on its log.
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
