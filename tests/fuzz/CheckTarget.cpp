#include "capture/Database.h"
#include "capture/Message.h"
#include "capture/Preferences.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/ProgramOutcomes.h"
#include "tests/fuzz/StoredRow.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;

/// The outcome of a check, by a second and deliberately simple implementation.
struct ReferenceCheck
{
    /// What is published; empty if a fatal stop comes first.
    std::string verificationCode;
    bool isFatal = false;
    /// The expected log.
    std::vector<std::string> lines;
};

/// The bytes of a column's value, which are its text too.
struct CellBytes
{
    std::optional<std::string> operator()(StoredRow::Null /*null*/) const { return std::nullopt; }
    std::optional<std::string> operator()(const StoredRow::Text& text) const { return text.bytes; }
    std::optional<std::string> operator()(const StoredRow::Blob& blob) const
    {
        return std::string(blob.bytes.begin(), blob.bytes.end());
    }
    std::optional<std::string> operator()(std::int64_t number) const
    {
        return std::to_string(number);
    }
};

std::optional<std::string> bytesOf(const StoredRow::Cell& cell)
{
    return std::visit(CellBytes(), cell);
}

bool isOlder(const StoredRow& one, const StoredRow& other)
{
    if (!one.date || !other.date) {
        return !one.date && other.date;
    }
    return *one.date < *other.date;
}

/// Newest first; of those with one date, the last inserted comes first: the store's index is walked
/// backwards.
std::vector<StoredRow> newestRows(std::vector<StoredRow> rows)
{
    std::stable_sort(rows.begin(), rows.end(), isOlder);
    std::reverse(rows.begin(), rows.end());
    rows.resize(std::min<std::size_t>(rows.size(), 10));
    return rows;
}

void append(Lines& lines, const Lines& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
}

/// The outcome of the row's body alone.
ReferenceDecoding decodedBody(const StoredRow& row)
{
    return referenceDecoding(asHexadecimal(bytesOf(row.body).value_or("")));
}

/// The check of a store that holds `rows`, inserted in this order.
ReferenceCheck referenceCheck(const std::vector<StoredRow>& rows, bool withFourDigits)
{
    ReferenceCheck check{.verificationCode = "No Code", .lines = {"ready to access disk"}};
    for (const StoredRow& row : newestRows(rows)) {
        std::string words;
        if (const auto text = bytesOf(row.text)) {
            words = referenceRepaired(text->substr(0, text->find('\0')));
        } else {
            const ReferenceDecoding decoding = decodedBody(row);
            append(check.lines, decoding.lines);
            if (std::holds_alternative<ReferenceDecoding::Fatal>(decoding.outcome)) {
                check.isFatal = true;
                check.verificationCode.clear();
                return check;
            }
            const auto* const found =
                std::get_if<ReferenceDecoding::MessageText>(&decoding.outcome);
            if (found == nullptr) {
                continue;
            }
            words = found->text;
        }
        const ReferenceCodes codes = referenceCodes(words, withFourDigits);
        append(check.lines, codes.lines);
        if (codes.code) {
            check.verificationCode = *codes.code;
            return check;
        }
    }
    return check;
}

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

/// A message store in a temporary folder, written by one connection and read by the program's,
/// whose rows can be replaced repeatedly. Lives until the process ends, as the program's connection
/// does.
class LiveStore
{
public:
    LiveStore();
    LiveStore(const LiveStore&) = delete;
    LiveStore& operator=(const LiveStore&) = delete;

    [[nodiscard]] std::filesystem::path log() const;

    /// The program's reader. Its leftover statements are freed at intervals.
    [[nodiscard]] Database& database();

    /// Commits `rows`, in their order, in place of the previous ones.
    void replaceRows(const std::vector<StoredRow>& rows);

private:
    [[nodiscard]] sqlite3_stmt* compiled(const std::string& sql) const;

    TemporaryFolder library;
    sqlite3* writing = nullptr;
    sqlite3_stmt* begin = nullptr;
    sqlite3_stmt* erase = nullptr;
    sqlite3_stmt* insertion = nullptr;
    sqlite3_stmt* commit = nullptr;
    sqlite3* reading = nullptr;
    std::unique_ptr<Database> reader;
    int uses = 0;
};

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

/// A store, and a watch on its log that never reports anything. As in the program they live until
/// the process ends.
struct Services
{
    LiveStore store;
    ManualQueue queue;
    ManualClock clock;
    std::shared_ptr<FileMonitor> monitor = FileMonitor::create(
        store.log(),
        {.mainQueue = queue,
         .decisionQueue = queue,
         .clock = clock.function(),
         .makeVnodeSource =
             [](int, VnodeEvents, Queue&) { return std::make_unique<IdleVnodeSource>(); },
         .openFile = FileHandle::openForReading});
};

/// One controller, its preferences and its effects.
struct CheckRun
{
    explicit CheckRun(Services& services)
        : message(Message::create({
              .database = services.store.database(),
              .userDefaults = defaults,
              .pasteboard = pasteboard,
              .libraryFolder = [] { return std::filesystem::path("/"); },
              .makeFileMonitor = [&services](const auto&) { return services.monitor; },
          }))
    {
        QObject::connect(
            message.get(), &Message::objectWillChange, message.get(), [this] { ++changes; });
        message->registFileObserver();
        logged::clear();
    }

    /// False for a fatal stop.
    bool check(bool afterChange)
    {
        try {
            if (afterChange) {
                message->fileDidChange();
            } else {
                (void)message->checkMessages();
            }
            return true;
        } catch (const FatalStopException&) {
            return false;
        }
    }

    MemoryUserDefaults defaults;
    RecordingPasteboard pasteboard;
    std::shared_ptr<Message> message;
    int changes = 0;
};

/// What follows the check itself after a change of the store.
struct ExpectedEffects
{
    Lines lines;
    Lines pasteboardCalls;
};

ExpectedEffects expectedEffects(const ReferenceCheck& check, bool afterChange)
{
    const std::string& code = check.verificationCode;
    if (check.isFatal || code == "No Code" || !afterChange) {
        return {.lines = check.lines, .pasteboardCalls = {}};
    }
    Lines lines = check.lines;
    lines.push_back("file changed!! at message: code? " + code);
    return {.lines = lines, .pasteboardCalls = {"declare string", "set " + code + " as string"}};
}

Finding verifyCheck(CheckRun& checkRun, const ReferenceCheck& expected, bool afterChange)
{
    const bool isFatal = !checkRun.check(afterChange);
    const ExpectedEffects after = expectedEffects(expected, afterChange);
    if (auto finding = mismatch("log", logged::lines(), after.lines)) {
        return finding;
    }
    if (auto finding = mismatch("fatal stop", isFatal, expected.isFatal)) {
        return finding;
    }
    if (auto finding =
            mismatch("code", checkRun.message->verificationCode(), expected.verificationCode))
    {
        return finding;
    }
    if (auto finding = mismatch("pasteboard", checkRun.pasteboard.calls, after.pasteboardCalls)) {
        return finding;
    }
    return mismatch("changes announced", checkRun.changes, isFatal ? 0 : 1);
}

/// While capturing is off, a change of the store is no reason to do anything.
Finding verifyIgnoredChange(CheckRun& checkRun)
{
    if (!checkRun.check(true)) {
        return "a fatal stop while capturing is off";
    }
    if (auto finding = mismatch("log", logged::lines(), Lines())) {
        return finding;
    }
    return mismatch("changes announced", checkRun.changes, 0);
}

} // namespace

/// The first byte is two preferences, the others are the store's rows.
Finding checkInput(std::string_view input)
{
    static Services& services = *new Services;
    InputReader reader(input);
    const unsigned preferences = reader.byte();
    const bool isCapturing = preferences % 2 == 0;
    const bool withFourDigits = preferences / 2 % 2 == 0;
    const auto rows = storedRowsFrom(reader);
    services.store.replaceRows(rows);

    CheckRun checkRun(services);
    checkRun.defaults.setBool(isCapturing, preference::capturingEnabled);
    checkRun.defaults.setBool(withFourDigits, preference::fourDigitInclude);
    if (!isCapturing) {
        if (auto finding = verifyIgnoredChange(checkRun)) {
            return finding;
        }
    }
    return verifyCheck(checkRun, referenceCheck(rows, withFourDigits), isCapturing);
}

} // namespace orlimo
