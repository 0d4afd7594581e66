#include "capture/Message.h"
#include "capture/PreferenceKeys.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/fuzz/Disagreement.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/LiveStore.h"
#include "tests/fuzz/LoggedLines.h"
#include "tests/fuzz/PlainCheck.h"
#include "tests/fuzz/UnwindingStop.h"
#include "tests/support/HandClock.h"
#include "tests/support/HandQueue.h"

#include <string>
#include <vector>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;

/// A store, and a watch on its log that hears nothing. As in the program they live to the end of
/// the process.
struct Host
{
    LiveStore store;
    HandQueue queue;
    HandClock clock;
    std::shared_ptr<FileMonitor> monitor = FileMonitor::create(
        store.log(),
        {.mainQueue = queue,
         .decisionQueue = queue,
         .clock = clock.function(),
         .makeVnodeSource = [](int, VnodeEvents, Queue&) {
             return std::make_unique<IdleVnodeSource>();
         }});
};

/// One controller, with what it is told and what comes of it.
struct Checking
{
    explicit Checking(Host& host)
        : message(Message::create({
              .database = host.store.database(),
              .userDefaults = defaults,
              .pasteboard = pasteboard,
              .libraryFolder = [] { return std::filesystem::path("/"); },
              .makeFileMonitor = [&host](const auto&) { return host.monitor; },
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
        } catch (const UnwindingStop&) {
            return false;
        }
    }

    MemoryUserDefaults defaults;
    RecordingPasteboard pasteboard;
    std::shared_ptr<Message> message;
    int changes = 0;
};

/// What follows the check itself after a change of the store.
struct Aftermath
{
    Lines lines;
    Lines pasteboardCalls;
};

Aftermath aftermath(const PlainCheck& check, bool afterChange)
{
    const std::string& code = check.verificationCode;
    if (check.isFatal || code == "No Code" || !afterChange) {
        return {.lines = check.lines, .pasteboardCalls = {}};
    }
    Lines lines = check.lines;
    lines.push_back("file changed!! at message: code? " + code);
    return {.lines = lines, .pasteboardCalls = {"declare string", "set " + code + " as string"}};
}

Finding judgeCheck(Checking& checking, const PlainCheck& expected, bool afterChange)
{
    const bool isFatal = !checking.check(afterChange);
    const Aftermath after = aftermath(expected, afterChange);
    if (auto finding = disagreement("log", logged::lines(), after.lines)) {
        return finding;
    }
    if (auto finding = disagreement("fatal stop", isFatal, expected.isFatal)) {
        return finding;
    }
    if (auto finding =
            disagreement("code", checking.message->verificationCode(), expected.verificationCode))
    {
        return finding;
    }
    if (auto finding = disagreement("pasteboard", checking.pasteboard.calls, after.pasteboardCalls))
    {
        return finding;
    }
    return disagreement("changes announced", checking.changes, isFatal ? 0 : 1);
}

/// While capturing is off, a change of the store is no reason to do anything.
Finding judgeIgnoredChange(Checking& checking)
{
    if (!checking.check(true)) {
        return "a fatal stop while capturing is off";
    }
    if (auto finding = disagreement("log", logged::lines(), Lines())) {
        return finding;
    }
    return disagreement("changes announced", checking.changes, 0);
}

} // namespace

/// The first byte is two preferences, the others are the store's rows.
Finding judge(std::string_view input)
{
    static Host& host = *new Host;
    InputReader reader(input);
    const unsigned preferences = reader.byte();
    const bool isCapturing = preferences % 2 == 0;
    const bool withFourDigits = preferences / 2 % 2 == 0;
    const auto rows = storedRowsFrom(reader);
    host.store.replaceRows(rows);

    Checking checking(host);
    checking.defaults.setBool(isCapturing, preference::capturingEnabled);
    checking.defaults.setBool(withFourDigits, preference::fourDigitInclude);
    if (!isCapturing) {
        if (auto finding = judgeIgnoredChange(checking)) {
            return finding;
        }
    }
    return judgeCheck(checking, plainCheck(rows, withFourDigits), isCapturing);
}

} // namespace orlimo
