#include "capture/Message.h"
#include "capture/PreferenceKeys.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/fuzz/FatalStopException.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/LiveStore.h"
#include "tests/fuzz/LoggedLines.h"
#include "tests/fuzz/Mismatch.h"
#include "tests/fuzz/ReferenceCheck.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"

#include <string>
#include <vector>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;

/// A store, and a watch on its log that hears nothing. As in the program they live to the end of
/// the process.
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

/// One controller, with what it is told and what comes of it.
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
