#include "platform/process/FatalStop.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include <unistd.h>

namespace orlimo {
namespace {

std::string sourceLocation(int line)
{
    return "tests/platform/process/FatalStopTest.cpp:" + std::to_string(line);
}

/// Shows that a frame was unwound.
class UnwindingDetector
{
public:
    UnwindingDetector() = default;
    UnwindingDetector(const UnwindingDetector&) = delete;
    UnwindingDetector& operator=(const UnwindingDetector&) = delete;
    ~UnwindingDetector() { (void)std::fputs("unwound\n", stderr); }
};

TEST(FatalStop, NamesThePlaceAndTheReasonAndAborts)
{
    constexpr int line = __LINE__ + 1;
    const auto run = runForked([] { fatalStop("the impossible has happened"); });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(
        run.errors, "Orlimo stops at " + sourceLocation(line) + ": the impossible has happened\n");
    EXPECT_EQ(run.output, "");
}

TEST(FatalStop, NamesTheCallersPlaceAlsoWhenItIsHandedOn)
{
    const auto run = runForked([] { fatalStop("handed on", "capture/Msg.cpp", 42); });
    EXPECT_EQ(run.errors, "Orlimo stops at capture/Msg.cpp:42: handed on\n");
}

TEST(FatalStop, RunsNoExitHandler)
{
    const auto run = runForked([] {
        (void)std::atexit([] { (void)std::fputs("an exit handler has run\n", stderr); });
        fatalStop("reason", "file", 1);
    });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(run.errors, "Orlimo stops at file:1: reason\n");
}

TEST(FatalStop, LeavesStandardOutputAlone)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the thread sanitizer's own abort writes out what is in the buffers";
#endif
    const auto run = runForked([] {
        (void)std::fputs("still in the buffer", stdout);
        fatalStop("reason");
    });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(run.output, "");
}

TEST(FatalStop, UnwindsNothing)
{
    const auto run = runForked([] {
        const UnwindingDetector witness;
        fatalStop("reason");
    });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(run.errors.find("unwound"), std::string::npos);
}

TEST(FatalStop, WritesAnyReasonInFull)
{
    const std::string reason(100'000, 'x');
    const auto run = runForked([&reason] { fatalStop(reason, "file", 1); });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(run.errors, "Orlimo stops at file:1: " + reason + "\n");
}

TEST(FatalStop, AbortsAlsoWhenNobodyCanBeTold)
{
    const auto run = runForked([] {
        ::close(STDERR_FILENO);
        fatalStop("reason");
    });
    EXPECT_EQ(run.signal, SIGABRT);
}

TEST(FatalStopDeathTest, StopsTheProcessFromAnyThread)
{
    EXPECT_EXIT(
        std::thread([] { fatalStop("on a thread"); }).join(),
        testing::KilledBySignal(SIGABRT),
        "^Orlimo stops at tests/platform/process/FatalStopTest.cpp:[0-9]+: on a thread\n$");
}

} // namespace
} // namespace orlimo
