#include "platform/Queue.h"
#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

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

} // namespace
} // namespace orlimo
