#include "sample/SampleStore.h"
#include "tests/app/StoredPreferences.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/soak/SoakRecord.h"
#include "tests/soak/SoakTraffic.h"
#include "tests/support/DeliberateLeak.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QtGlobal>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <iostream>
#include <thread>

#include <malloc.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// How long to go on: unless the environment says it, long enough to do everything twice.
std::chrono::seconds wantedDuration()
{
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("ORLIMO_SOAK_SECONDS", &isNumber);
    return isNumber ? std::chrono::seconds(seconds) : 30s;
}

/// Bytes that are handed out at this moment, with what the allocator adds to each piece.
long allocated()
{
    return static_cast<long>(::mallinfo2().uordblks);
}

/// How many bytes of memory one read of the newest messages keeps for good: what the statement that
/// it compiles takes, which stays with the connection to the end of the process. Measured here, on
/// a store of its own.
long statementCost()
{
    constexpr std::int64_t messages = 10;
    constexpr int reads = 200;
    const TemporaryFolder library;
    std::filesystem::create_directories(library.path() / "Messages");
    sample::SampleStore store(library.path() / "Messages/chat.db");
    store.fill(messages);

    const DeliberateLeak statements;
    Database& database = processLifetimeDatabase(library.path());
    // What the first reads need once is not what each of them keeps.
    for (int read = 0; read < reads; ++read) {
        EXPECT_EQ(database.fetchMessages(messages).size(), 10U);
    }
    const long before = allocated();
    for (int read = 0; read < reads; ++read) {
        (void)database.fetchMessages(messages);
    }
    return (allocated() - before) / reads;
}

/// The program in use: a message as often as the throttle lets one through, while its user and
/// other programs do what they do in a day.
class Soak : public testing::Test
{
protected:
    void SetUp() override
    {
        record.statementCost = statementCost();
        program.start();
        begin = steady_clock::now();
        ProgramSession::waitForThrottle();
        lastReaction = steady_clock::now() - throttleInterval;
    }

    void TearDown() override
    {
        record.messages = traffic.messages();
        std::cout << record.summary(maxSummaryRows) << std::flush;
    }

    /// Delivers the next message the moment the throttle is open, and expects its code on standard
    /// output and on the clipboard.
    void deliverAndExpectCode()
    {
        std::this_thread::sleep_until(lastReaction + throttleInterval);
        program.session().deliver(traffic.next());
        const auto committed = steady_clock::now();
        const std::string code = traffic.code(fourDigitInclude);
        const auto lines = program.session().readReaction();
        lastReaction = steady_clock::now();
        record.delays.push_back(
            std::chrono::duration<double, std::milli>(lastReaction - committed).count());

        ++record.expected;
        const std::string expected = ProgramSession::reactionPrefix + code;
        const bool published = !lines.empty() && lines.back() == expected;
        EXPECT_TRUE(published) << "message " << traffic.messages() << ": "
                               << testing::PrintToString(lines) << " instead of " << expected;
        const auto pasted = program.awaitPaste(code);
        EXPECT_TRUE(pasted) << "message " << traffic.messages();
        record.missed += published && pasted ? 0 : 1;
    }

    /// Delivers a message while automatic copying is off: nothing is to happen until the window is
    /// opened, and it then shows what was delivered.
    void deliverWhileDisabled()
    {
        setPreferences(false, true);
        std::this_thread::sleep_until(lastReaction + throttleInterval);
        const std::string before = program.desktop().server().paste("clipboard");
        const long reads = checks();
        program.session().deliver(traffic.next());
        ProgramSession::waitForThrottle();
        EXPECT_EQ(checks(), reads);
        EXPECT_EQ(program.desktop().server().paste("clipboard"), before);

        program.open();
        const std::string found = "Found numbers: [\"" + traffic.code(true) + "\"]";
        EXPECT_TRUE(awaitWithPolling([&] { return lastLine() == found; }))
            << lastLine() << " instead of " << found;
        EXPECT_EQ(program.desktop().server().paste("clipboard"), before);
        program.close();
        setPreferences(true, true);
    }

    void setPreferences(bool capturingEnabled, bool fourDigits)
    {
        fourDigitInclude = fourDigits;
        storePreferences(
            program.session(),
            {{"capturingEnabled", capturingEnabled},
             {"fourDigitInclude", fourDigits},
             {"loginItemEnabled", true}});
    }

    void takeClipboard()
    {
        program.desktop().server().copy("clipboard", "something that the user copied");
    }

    void restartTray()
    {
        DesktopSession& desktop = program.desktop();
        desktop.killTray();
        desktop.startTray({});
        desktop.awaitTray();
        const auto process = static_cast<std::uint32_t>(program.process().processId());
        EXPECT_TRUE(awaitWithPolling([&] {
            return desktop.windows().trayIconOf(process).has_value();
        })) << "no icon in the new tray";
    }

    /// Folds the log into the store and cuts it to nothing, as the Messages application does now
    /// and then.
    void truncateLog() { EXPECT_EQ(program.session().writer().ask("truncate"), "ok"); }

    /// The window shows digits of another script, for which Qt loads a font once.
    void showEveryScript()
    {
        program.session().deliver(
            "text \\xEF\\xBC\\x94\\xEF\\xBC\\x98\\xEF\\xBC\\x92\\xEF\\xBC\\x99");
        EXPECT_FALSE(program.session().readReaction().empty());
        lastReaction = steady_clock::now();
        program.open();
        program.close();
    }

    /// Everything once, a message after each, and back to where it began.
    void runUsagePeriod()
    {
        const std::array<std::function<void()>, 10> acts{
            [this] { program.open(); },
            [this] { program.close(); },
            [this] { takeClipboard(); },
            [this] { setPreferences(true, false); },
            [] {},
            [this] { setPreferences(true, true); },
            [this] { deliverWhileDisabled(); },
            [this] { truncateLog(); },
            [this] { restartTray(); },
            [] {},
        };
        for (const auto& act : acts) {
            if (record.missed == 0) { // after one, the rest would be waited for in vain
                act();
                deliverAndExpectCode();
            }
        }
    }

    void sample()
    {
        record.samples.push_back(
            {.time = steady_clock::now() - begin,
             .checks = checks(),
             .usage = ProcessUsage::of(program.process().processId())});
    }

    [[nodiscard]] long checks() { return program.count(DesktopProgram::readLine); }

    [[nodiscard]] std::string lastLine()
    {
        const auto lines = linesOf(program.process().output());
        return lines.empty() ? "" : lines.back();
    }

    static constexpr std::chrono::milliseconds throttleInterval{1600};
    static constexpr std::size_t maxSummaryRows = 20;
    /// What a heap that others use too takes beyond what is asked of it, and by how much, in bytes,
    /// two looks at a program that is as it was may differ.
    static constexpr double allocatorsShare = 1.25;
    static constexpr double pagesInUse = 256.0 * 1024;

    DesktopProgram program;
    SoakTraffic traffic;
    SoakRecord record;
    bool fourDigitInclude = true;
    steady_clock::time_point begin;
    steady_clock::time_point lastReaction;
};

TEST_F(Soak, LosesNoCodeAndHoldsOnToNothingButStatements)
{
    const auto end = steady_clock::now() + wantedDuration();
    // What is made at its first use is made before the first look.
    showEveryScript();
    runUsagePeriod();
    sample();
    do {
        runUsagePeriod();
        sample();
    } while (steady_clock::now() < end && record.missed == 0);

    EXPECT_EQ(record.missed, 0);
    EXPECT_TRUE(program.process().isRunning());
    EXPECT_EQ(program.process().errors(), "");
    const SoakRecord::Sample& first = record.samples.front();
    const SoakRecord::Sample& last = record.samples.back();
    EXPECT_EQ(last.usage.descriptors, first.usage.descriptors);
    EXPECT_EQ(last.usage.threads, first.usage.threads);
#ifndef ORLIMO_SANITIZED
    const double checks = static_cast<double>(last.checks - first.checks);
    const double statements = checks * static_cast<double>(record.statementCost);
    EXPECT_LE(
        static_cast<double>(last.usage.anonymous - first.usage.anonymous) * 1024,
        statements * allocatorsShare + pagesInUse);
#endif
}

} // namespace
} // namespace orlimo
