#include "platform/threads/Queue.h"
#include "tests/support/Await.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>

#include <sys/resource.h>

namespace orlimo {
namespace {

int niceness()
{
    return ::getpriority(PRIO_PROCESS, 0);
}

TEST(BackgroundThreads, GivesWayToOtherPrograms)
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

TEST(BackgroundThreads, FinishesWhatHasBegunBeforeTheApplicationObjectHasGone)
{
    ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {"finish-background-work"}});
    EXPECT_EQ(probe.awaitEnd().status, 0);
    EXPECT_EQ(probe.errors(), "");
}

/// Has the probe do what it can as the superuser alone, and as far as the host lets it.
void expectSuccessOf(const std::string& command)
{
    ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {command}});
    const auto end = probe.awaitEnd();
    EXPECT_EQ(probe.errors(), "");
    constexpr int notPossibleHere = 77;
    if (end.status == notPossibleHere) {
        GTEST_SKIP() << "only the superuser can become a user who disturbs nobody";
    }
    EXPECT_EQ(end.status, 0);
}

TEST(BackgroundThreads, AreStartedForWhatWaitedBecauseTheyCouldNotBe)
{
    expectSuccessOf("offer-before-there-are-threads");
}

TEST(BackgroundThreads, DoNotHoldTheEndUpWhereTheyCannotBeStarted)
{
    expectSuccessOf("leave-without-threads");
}

} // namespace
} // namespace orlimo
