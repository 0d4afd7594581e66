#include "platform/threads/Queue.h"

#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace orlimo {
namespace {

TEST(MainQueue, WorkRunsInOrderOnTheMainThread)
{
    constexpr int numberOfThreads = 4;
    std::map<int, std::vector<int>> ran; // by the thread that posted; the main thread's alone
    int offMainThread = 0;
    int total = 0;
    {
        std::vector<JoiningThread> threads;
        for (int thread = 0; thread <= numberOfThreads; ++thread) {
            const auto post = [&, thread] {
                for (int number = 0; number < 250; ++number) {
                    mainQueue().async([&, thread, number] {
                        offMainThread += isMainThread() ? 0 : 1;
                        ran[thread].push_back(number);
                        ++total;
                    });
                }
            };
            if (thread == numberOfThreads) {
                post();
            } else {
                threads.emplace_back(post);
            }
        }
    }
    EXPECT_TRUE(ran.empty()) << "posting runs nothing";
    ASSERT_TRUE(await([&total] { return total >= 1250; }));
    EXPECT_EQ(offMainThread, 0);
    std::vector<int> expected(250);
    std::iota(expected.begin(), expected.end(), 0);
    for (int thread = 0; thread <= numberOfThreads; ++thread) {
        EXPECT_EQ(ran[thread], expected) << "thread " << thread;
    }
}

TEST(MainQueue, WorkPostedByWorkRunsAfterIt)
{
    std::vector<std::string> order;
    mainQueue().async([&order] {
        order.emplace_back("outer begins");
        mainQueue().async([&order] { order.emplace_back("inner"); });
        order.emplace_back("outer ends");
    });
    ASSERT_TRUE(await([&order] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<std::string>{"outer begins", "outer ends", "inner"}));
}

TEST(BackgroundQueue, WorkRunsOnceOffTheMainThread)
{
    EXPECT_EQ(&backgroundQueue(), &backgroundQueue());
    std::vector<std::atomic<int>> runs(5000);
    std::atomic<int> ran = 0;
    std::atomic<int> onMainThread = 0;
    for (auto& run : runs) {
        backgroundQueue().async([&] {
            ++run;
            onMainThread += isMainThread() ? 1 : 0;
            ++ran;
        });
    }
    ASSERT_TRUE(await([&ran] { return ran >= 5000; }));
    EXPECT_TRUE(std::all_of(runs.begin(), runs.end(), [](const auto& run) { return run == 1; }));
    EXPECT_EQ(onMainThread, 0);
}

TEST(BackgroundQueue, TwoPiecesOfWorkRunAtATime)
{
    // Each waits for the other, so that neither ends unless both run.
    std::barrier meeting(2);
    std::atomic<int> met = 0;
    for (int work = 0; work < 2; ++work) {
        backgroundQueue().async([&] {
            meeting.arrive_and_wait();
            ++met;
        });
    }
    EXPECT_TRUE(await([&met] { return met == 2; }));
}

TEST(Queues, WorkIsKeptUntilItHasRun)
{
    for (Queue* const queue : {&mainQueue(), &backgroundQueue()}) {
        std::atomic<bool> mayEnd = queue == &mainQueue();
        auto token = std::make_shared<int>(0);
        const std::weak_ptr<int> kept = token;
        queue->async([token, &mayEnd] { mayEnd.wait(false); });
        token.reset();
        EXPECT_FALSE(kept.expired());
        mayEnd = true;
        mayEnd.notify_all();
        EXPECT_TRUE(await([&kept] { return kept.expired(); }));
    }
}

/// Another process, which destroys its application object.
class QueuesAtExit : public testing::TestWithParam<const char*>
{};

INSTANTIATE_TEST_SUITE_P(
    Probe,
    QueuesAtExit,
    testing::Values("post-after-exit", "exit-with-pending-work", "post-concurrently"),
    [](const auto& instance) {
        std::string name = instance.param;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

TEST_P(QueuesAtExit, PendingAndLaterWorkIsDropped)
{
    ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {GetParam()}});
    const auto end = probe.awaitEnd();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.signal, std::nullopt);
    EXPECT_EQ(probe.errors(), "");
}

} // namespace
} // namespace orlimo
