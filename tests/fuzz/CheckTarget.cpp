#include "capture/Message.h"
#include "capture/Preferences.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/LiveStore.h"
#include "tests/fuzz/ProgramOutcomes.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"

#include <algorithm>
#include <optional>
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
