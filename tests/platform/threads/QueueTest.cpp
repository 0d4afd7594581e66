#include "platform/threads/Queue.h"

#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/process/ChildProcess.h"

#include <QCoreApplication>
#include <QThread>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <memory>
#include <mutex>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

/// How a probe that was told `command` ends, with what it said.
void expectSuccessOf(const std::string& command)
{
    ChildProcess probe(ORLIMO_QUEUE_PROBE, {.arguments = {command}});
    const auto end = probe.awaitEnd();
    EXPECT_EQ(end.status, 0) << command;
    EXPECT_EQ(end.signal, std::nullopt) << command;
    EXPECT_EQ(probe.errors(), "") << command;
}

TEST(MainQueue, IsOne)
{
    EXPECT_EQ(&mainQueue(), &mainQueue());
}

TEST(MainQueue, RunsWorkInTheOrderInWhichItWasOffered)
{
    std::vector<int> order;
    for (int work = 0; work < 1000; ++work) {
        mainQueue().async([&order, work] { order.push_back(work); });
    }
    EXPECT_TRUE(order.empty()) << "offering runs nothing";
    ASSERT_TRUE(await([&order] { return order.size() >= 1000; }));
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(MainQueue, RunsWorkOnceAndOnTheMainThreadWhereverItWasOffered)
{
    struct Offer
    {
        int thread;
        int number;
    };
    std::vector<Offer> offers; // the main thread's alone
    int strayed = 0;
    {
        std::vector<JoiningThread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&offers, &strayed, thread] {
                for (int number = 0; number < 250; ++number) {
                    mainQueue().async([&offers, &strayed, thread, number] {
                        strayed += isMainThread() ? 0 : 1;
                        offers.push_back({thread, number});
                    });
                }
            });
        }
    }
    ASSERT_TRUE(await([&offers] { return offers.size() >= 1000; }));
    EXPECT_EQ(offers.size(), 1000U);
    EXPECT_EQ(strayed, 0);
    for (int thread = 0; thread < 4; ++thread) {
        int next = 0;
        for (const Offer& offer : offers) {
            if (offer.thread == thread) {
                EXPECT_EQ(offer.number, next++) << "thread " << thread;
            }
        }
        EXPECT_EQ(next, 250);
    }
}

TEST(MainQueue, RunsOnePieceOfWorkAtATime)
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

TEST(MainQueue, KeepsWorkUntilItHasRun)
{
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    mainQueue().async([token] { ++*token; });
    token.reset();
    EXPECT_FALSE(kept.expired());
    EXPECT_TRUE(await([&kept] { return kept.expired(); }));
}

TEST(MainQueue, DropsWhatIsOfferedAfterTheApplicationObjectHasGone)
{
    expectSuccessOf("offer-afterwards");
}

TEST(MainQueue, DoesNotRunWhatWaitsWhenTheApplicationObjectGoes)
{
    expectSuccessOf("leave-waiting");
}

TEST(MainQueue, TakesOffersOfThreadsWhileTheApplicationObjectGoes)
{
    expectSuccessOf("offer-meanwhile");
}

TEST(BackgroundQueue, IsOneAndNotTheMainQueue)
{
    EXPECT_EQ(&backgroundQueue(), &backgroundQueue());
    EXPECT_NE(&backgroundQueue(), &mainQueue());
}

TEST(BackgroundQueue, RunsEachPieceOfWorkOnceOffTheMainThread)
{
    std::vector<std::atomic<int>> runs(5000);
    std::atomic<int> ran = 0;
    std::atomic<int> strayed = 0;
    for (auto& run : runs) {
        backgroundQueue().async([&] {
            ++run;
            strayed += isMainThread() ? 1 : 0;
            ++ran;
        });
    }
    ASSERT_TRUE(await([&ran] { return ran >= 5000; }));
    EXPECT_TRUE(std::all_of(runs.begin(), runs.end(), [](const auto& run) { return run == 1; }));
    EXPECT_EQ(strayed, 0);
}

TEST(BackgroundQueue, RunsSeveralPiecesOfWorkAtATime)
{
    if (QThread::idealThreadCount() < 2) {
        GTEST_SKIP() << "there is one processor";
    }
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

TEST(BackgroundQueue, DropsWorkWhenItHasRun)
{
    auto token = std::make_shared<std::atomic<int>>(0);
    const std::weak_ptr<std::atomic<int>> kept = token;
    backgroundQueue().async([token] { ++*token; });
    token.reset();
    EXPECT_TRUE(await([&kept] { return kept.expired(); }));
}

} // namespace
} // namespace orlimo
