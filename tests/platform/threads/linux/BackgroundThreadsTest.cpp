#include "platform/threads/Queue.h"
#include "platform/threads/UptimeClock.h"
#include "tests/support/Await.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {
namespace {

int niceness()
{
    return ::getpriority(PRIO_PROCESS, 0);
}

TEST(UptimeClock, ReadsTheSystemsSteadyClock)
{
    const auto before = std::chrono::steady_clock::now();
    const Uptime reading = currentUptime();
    const auto after = std::chrono::steady_clock::now();
    EXPECT_GE(reading, before);
    EXPECT_LE(reading, after);
}

TEST(BackgroundThreads, WorkRunsAtNicenessTen)
{
    const int own = niceness();
    std::atomic<int> lowest = 100;
    std::atomic<int> ran = 0;
    for (int work = 0; work < 100; ++work) {
        backgroundQueue().async([&] {
            lowest = std::min<int>(lowest, niceness());
            ++ran;
        });
    }
    ASSERT_TRUE(await([&ran] { return ran == 100; }));
    EXPECT_GE(lowest, 10);
    EXPECT_EQ(niceness(), own) << "the main thread keeps its own priority";
}

TEST(BackgroundThreads, WorkWithAThreadIsFinishedBeforeTheApplicationExits)
{
    for (const char* const command :
         {"finish-background-work", "post-before-threads-start", "exit-without-threads"})
    {
        ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {command}});
        const auto status = probe.awaitEnd().status;
        EXPECT_EQ(probe.errors(), "") << command;
        constexpr int notPossibleHere = 77; // only root can prevent the start of threads
        EXPECT_TRUE(status == 0 || (status == notPossibleHere && ::geteuid() != 0))
            << command << " ended with " << status.value_or(-1);
    }
}

} // namespace
} // namespace orlimo
