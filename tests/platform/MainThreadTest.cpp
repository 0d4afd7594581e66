#include "platform/MainThread.h"

#include "platform/Queue.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orlimo {
namespace {

TEST(MainThread, IsTheOneThatRunsTheTests)
{
    EXPECT_TRUE(isMainThread());
}

TEST(MainThread, IsNoOtherThread)
{
    bool main = true;
    std::thread([&main] { main = isMainThread(); }).join();
    EXPECT_FALSE(main);
}

TEST(MainThread, IsNotTheBackgroundQueues)
{
    std::atomic<int> answer = -1;
    backgroundQueue().async([&answer] { answer = isMainThread() ? 1 : 0; });
    ASSERT_TRUE(await([&answer] { return answer != -1; }));
    EXPECT_EQ(answer, 0);
}

} // namespace
} // namespace orlimo
