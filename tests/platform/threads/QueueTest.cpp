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
#include <numeric>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

TEST(MainQueue, WorkRunsInOrderOnTheMainThread)
{
    std::map<int, std::vector<int>> ran; // by the thread that posted; the main thread's alone
    int total = 0;
    bool isRunning = false;
    const auto post = [&](int thread) {
        for (int number = 0; number < 250; ++number) {
            mainQueue().async([&, thread, number] {
                EXPECT_TRUE(isMainThread());
                EXPECT_FALSE(std::exchange(isRunning, true)) << "one at a time";
                ran[thread].push_back(number);
                mainQueue().async([&] { total += isRunning ? 1000 : 1; });
                isRunning = false;
            });
        }
    };
    {
        std::vector<JoiningThread> threads;
        for (int thread = 1; thread < 5; ++thread) {
            threads.emplace_back([&post, thread] { post(thread); });
        }
        post(0);
    }
    EXPECT_TRUE(ran.empty()) << "posting runs nothing";
    ASSERT_TRUE(await([&total] { return total >= 1250; }));
    EXPECT_EQ(total, 1250);
    std::vector<int> expected(250);
    std::iota(expected.begin(), expected.end(), 0);
    for (int thread = 0; thread < 5; ++thread) {
        EXPECT_EQ(ran[thread], expected) << "thread " << thread;
    }
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

/// In another process, which destroys its application object.
TEST(QueuesAtExit, PendingAndLaterWorkIsDropped)
{
    for (const char* const command : {"post-before-and-after-exit", "post-concurrently"}) {
        ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {command}});
        EXPECT_EQ(probe.awaitEnd().status, 0) << command;
        EXPECT_EQ(probe.errors(), "");
    }
}

} // namespace
} // namespace orlimo
