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
    constexpr int stopLine = __LINE__ + 8;
    const std::string reason(100'000, 'x');
    for (const bool isErrorClosed : {false, true}) {
        const auto run = runForked([&reason, isErrorClosed] {
            (void)std::atexit([] { (void)std::fputs("an exit handler has run\n", stderr); });
            if (isErrorClosed) {
                ::close(STDERR_FILENO);
            }
            fatalStop(reason);
        });
        EXPECT_EQ(run.signal, SIGABRT);
        const std::string line =
            "Orlimo stops at tests/platform/process/FatalStopTest.cpp:" + std::to_string(stopLine) +
            ": " + reason + "\n";
        EXPECT_EQ(run.errors, isErrorClosed ? "" : line);
    }
}

} // namespace
} // namespace orlimo
