#include "capture/Database.h"
#include "capture/Message.h"
#include "capture/Preferences.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/StoredRow.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ProgramOutcomes.h"
#include "tests/support/ScriptedVnodeSource.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;

/// What comes of a check.
struct Outcome
{
    Lines lines{}; ///< the log
    bool isFatal = false;
    std::string code{};      ///< as it is published
    Lines pasteboardCalls{}; ///< as RecordingPasteboard notes them
    int changes = 0;         ///< as announced
};

Finding mismatchOf(const Outcome& actual, const Outcome& expected)
{
    return firstOf({
        mismatch("log", actual.lines, expected.lines),
        mismatch("fatal stop", actual.isFatal, expected.isFatal),
        mismatch("code", actual.code, expected.code),
        mismatch("pasteboard", actual.pasteboardCalls, expected.pasteboardCalls),
        mismatch("changes announced", actual.changes, expected.changes),
    });
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

/// What the message's text is; the body is decoded if there is none.
ReferenceDecoding textOf(const StoredRow& row)
{
    if (const auto& text = row.text.bytes) {
        return {.messageText = referenceRepaired(text->substr(0, text->find('\0')))};
    }
    return referenceDecoding(asHexadecimal(row.body.bytes.value_or("")));
}

/// The outcome for a store that holds `rows`, inserted in this order, by a second and deliberately
/// simple implementation.
Outcome
referenceOutcome(const std::vector<StoredRow>& rows, bool withFourDigits, bool isAfterChange)
{
    Outcome outcome{.lines = {"ready to access disk"}, .code = "No Code", .changes = 1};
    const auto log = [&outcome](const Lines& lines) {
        outcome.lines.insert(outcome.lines.end(), lines.begin(), lines.end());
    };
    for (const StoredRow& row : newestRows(rows)) {
        const ReferenceDecoding decoding = textOf(row);
        log(decoding.lines);
        if (decoding.isFatal) {
            return {.lines = outcome.lines, .isFatal = true};
        }
        if (!decoding.messageText) {
            continue;
        }
        const ReferenceCodes codes = referenceCodes(*decoding.messageText, withFourDigits);
        log(codes.lines);
        if (codes.code) {
            outcome.code = *codes.code;
            if (isAfterChange) {
                log({"file changed!! at message: code? " + outcome.code});
                outcome.pasteboardCalls = {"declare string", "set " + outcome.code + " as string"};
            }
            return outcome;
        }
    }
    return outcome;
}

/// A message store, the program's reader of it, and a watch on its log that never reports anything.
/// As in the program they live until the process ends.
struct LiveStore
{
    LiveStore()
    {
        // Inputs are many: the log is to stay short, and nothing has to survive.
        writer.run("PRAGMA wal_autocheckpoint = 1000; PRAGMA synchronous = OFF");
        const OpenedConnections opened;
        reader = std::make_unique<Database>(library.path());
        reading = opened.only();
    }

    /// Commits `rows`, in their order, in place of the previous ones. The reader's leftover
    /// statements are freed at intervals.
    void replaceRows(const std::vector<StoredRow>& rows)
    {
        std::string sql = "BEGIN IMMEDIATE; DELETE FROM message;";
        for (const StoredRow& row : rows) {
            sql += "INSERT INTO message (text, attributedBody, date) VALUES (" + row.text.sql +
                   ", " + row.body.sql + ", " + (row.date ? std::to_string(*row.date) : "NULL") +
                   ");";
        }
        writer.run(sql + "COMMIT");
        if (++uses % 50 == 0) {
            finaliseStatements(reading);
        }
    }

    TemporaryFolder library;
    StoreWriter writer{library.path()};
    sqlite3* reading = nullptr;
    std::unique_ptr<Database> reader;
    int uses = 0;
    ManualQueue queue;
    ManualClock clock;
    std::shared_ptr<FileMonitor> monitor = FileMonitor::create(
        library.path() / "Messages/chat.db-wal",
        {.mainQueue = queue,
         .decisionQueue = queue,
         .clock = clock.function(),
         .makeVnodeSource =
             ScriptedVnodeSource::factory(std::make_shared<ScriptedVnodeSource::Script>()),
         .openFile = FileHandle::openForReading});
};

/// One controller, its preferences and its effects.
struct CheckRun
{
    explicit CheckRun(LiveStore& store)
        : message(Message::create({
              .database = *store.reader,
              .userDefaults = defaults,
              .pasteboard = pasteboard,
              .libraryFolder = [] { return std::filesystem::path("/"); },
              .makeFileMonitor = [&store](const auto&) { return store.monitor; },
          }))
    {
        QObject::connect(
            message.get(), &Message::objectWillChange, message.get(), [this] { ++changes; });
        message->registFileObserver();
        logged::clear();
    }

    Outcome check(bool isAfterChange)
    {
        bool isFatal = false;
        try {
            if (isAfterChange) {
                message->fileDidChange();
            } else {
                (void)message->checkMessages();
            }
        } catch (const FatalStopException&) {
            isFatal = true;
        }
        return {
            .lines = logged::lines(),
            .isFatal = isFatal,
            .code = message->verificationCode(),
            .pasteboardCalls = pasteboard.calls,
            .changes = changes,
        };
    }

    MemoryUserDefaults defaults;
    RecordingPasteboard pasteboard;
    std::shared_ptr<Message> message;
    int changes = 0;
};

} // namespace

/// The first byte is two preferences, the others are the store's rows.
Finding checkInput(std::string_view input)
{
    static LiveStore& store = *new LiveStore;
    InputReader reader(input);
    const unsigned preferences = reader.byte();
    const bool isCapturing = preferences % 2 == 0;
    const bool withFourDigits = preferences / 2 % 2 == 0;
    const auto rows = storedRowsFrom(reader);
    store.replaceRows(rows);

    CheckRun checkRun(store);
    checkRun.defaults.setBool(isCapturing, preference::capturingEnabled);
    checkRun.defaults.setBool(withFourDigits, preference::fourDigitInclude);
    if (!isCapturing) {
        if (auto finding = mismatchOf(checkRun.check(true), Outcome())) {
            return finding;
        }
    }
    return mismatchOf(
        checkRun.check(isCapturing), referenceOutcome(rows, withFourDigits, isCapturing));
}

} // namespace orlimo
