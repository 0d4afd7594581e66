#include "platform/process/FatalStop.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

TEST(FatalStop, NamesLocationAndReasonAndAborts)
{
    constexpr int stopLine = __LINE__ + 3;
    const auto run = runForked([] {
        (void)std::atexit([] { (void)std::fputs("an exit handler has run\n", stderr); });
        fatalStop("the impossible has happened");
    });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_EQ(
        run.errors,
        "Orlimo stops at tests/platform/process/FatalStopTest.cpp:" + std::to_string(stopLine) +
            ": the impossible has happened\n");

    for (const bool isClosed : {false, true}) {
        const std::string reason(100'000, 'x');
        const auto longRun = runForked([&reason, isClosed] {
            if (isClosed) {
                ::close(STDERR_FILENO);
            }
            fatalStop(reason, "capture/Msg.cpp", 42);
        });
        EXPECT_EQ(longRun.signal, SIGABRT);
        const std::string line = "Orlimo stops at capture/Msg.cpp:42: " + reason + "\n";
        EXPECT_EQ(longRun.errors, isClosed ? "" : line);
    }
}

} // namespace
} // namespace orlimo
