#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ThreadSafeManualQueue.h"
#include "watch/Throttle.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// Runs `work` on each of `number` threads at a time and waits for their end.
void onThreads(int number, const std::function<void()>& work)
{
    std::vector<JoiningThread> threads;
    threads.reserve(static_cast<std::size_t>(number));
    for (int thread = 0; thread < number; ++thread) {
        threads.emplace_back(work);
    }
}

/// Counts calls that were offered and what became of each.
class CallCounter
{
public:
    /// An action that counts its run, and counts its end when it is destroyed.
    [[nodiscard]] Throttle::Action action()
    {
        ++offered;
        const std::shared_ptr<void> token(nullptr, [this](void*) { ++ended; });
        return [this, token] {
            ++run;
            if (!isMainThread()) {
                ++offMainThreadCalls;
            }
        };
    }

    /// Runs the event loop until every offered action has run or was dropped.
    [[nodiscard]] bool awaitAll() const
    {
        return await([this] { return ended == offered; });
    }

    std::atomic<int> offered = 0;
    std::atomic<int> run = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> offMainThreadCalls = 0;
};

TEST(ThrottleConcurrency, RunsAnAcceptedActionOnTheMainThreadWhereverItWasOffered)
{
    CallCounter callCounter;
    const auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), currentUptime);
    onThreads(1, [&] {
        EXPECT_FALSE(isMainThread());
        throttle->throttle(callCounter.action());
    });
    throttle->throttle(callCounter.action());

    ASSERT_TRUE(callCounter.awaitAll());
    EXPECT_EQ(callCounter.run, 2);
    EXPECT_EQ(callCounter.offMainThreadCalls, 0);
}

TEST(ThrottleConcurrency, DecidesOffTheMainThread)
{
    std::atomic<int> readings = 0;
    std::atomic<int> onTheMainThread = 0;
    CallCounter callCounter;
    const auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), [&] {
        ++readings;
        onTheMainThread += isMainThread() ? 1 : 0;
        return currentUptime();
    });
    EXPECT_EQ(readings, 1) << "construction reads the clock";
    EXPECT_EQ(onTheMainThread, 1);

    throttle->throttle(callCounter.action());
    ASSERT_TRUE(callCounter.awaitAll());
    EXPECT_GT(readings, 1);
    EXPECT_EQ(onTheMainThread, 1);
}

TEST(ThrottleConcurrency, AcceptsEveryCallOfManyThreadsWhenTheDelayIsNothing)
{
    CallCounter callCounter;
    const auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), currentUptime);
    onThreads(8, [&] {
        for (int call = 0; call < 500; ++call) {
            throttle->throttle(callCounter.action());
        }
    });

    ASSERT_TRUE(callCounter.awaitAll());
    EXPECT_EQ(callCounter.run, 8 * 500);
    EXPECT_EQ(callCounter.offMainThreadCalls, 0);
}

TEST(ThrottleConcurrency, AcceptsExactlyOneAmongThousandsOfCallsAtTheSameTime)
{
    ManualClock clock;
    const auto throttle = Throttle::create(3600, backgroundQueue(), mainQueue(), clock.function());
    for (int round = 1; round <= 5; ++round) {
        CallCounter callCounter;
        clock.advance(1h);
        onThreads(8, [&] {
            for (int call = 0; call < 500; ++call) {
                throttle->throttle(callCounter.action());
            }
        });
        ASSERT_TRUE(callCounter.awaitAll());
        EXPECT_EQ(callCounter.run, 1) << "round " << round;
        EXPECT_EQ(callCounter.offMainThreadCalls, 0);
    }
}

TEST(ThrottleConcurrency, DropsWhatWaitsWhenItIsReleasedWhileThreadsOffer)
{
    CallCounter callCounter;
    auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), currentUptime);
    std::array<std::weak_ptr<Throttle>, 4> observed{};
    observed.fill(throttle);
    std::atomic<std::size_t> next = 0;
    std::vector<JoiningThread> threads;
    threads.reserve(observed.size());
    for (std::size_t thread = 0; thread < observed.size(); ++thread) {
        threads.emplace_back([&] {
            const auto& mine = observed.at(next++);
            for (int call = 0; call < 200; ++call) {
                if (const auto present = mine.lock()) {
                    present->throttle(callCounter.action());
                }
            }
        });
    }
    throttle.reset();
    threads.clear();

    ASSERT_TRUE(callCounter.awaitAll());
    EXPECT_LE(callCounter.run, callCounter.offered);
    EXPECT_EQ(callCounter.offMainThreadCalls, 0);
}

/// A throttle whose decisions a test takes on threads of its own, and whose clock it holds up.
class ConcurrentDecisions : public testing::Test
{
protected:
    ThreadSafeManualQueue decisions;
    ThreadSafeManualQueue main;
    ManualClock time;
};

TEST_F(ConcurrentDecisions, OfTwoThatReadTheSameTimeOnlyOneWins)
{
    // Neither decision goes on before the other has read the clock too.
    std::barrier bothHaveRead(2);
    std::atomic<int> readings = 0;
    const auto throttle = Throttle::create(1.6, decisions, main, [&] {
        const Uptime now = time.now();
        const int reading = ++readings; // the first is the construction's
        if (reading == 2 || reading == 3) {
            bothHaveRead.arrive_and_wait();
        }
        return now;
    });
    time.advance(1h);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; });
    throttle->throttle([&runs] { ++runs; });
    onThreads(2, [this] { decisions.run(); });
    main.run();
    EXPECT_EQ(runs, 1);
}

TEST_F(ConcurrentDecisions, OneThatIsOvertakenIsStillAcceptedWhenTheDelayIsNothing)
{
    std::promise<void> overtaken;
    std::promise<void> hasRead;
    std::atomic<int> readings = 0;
    const auto throttle = Throttle::create(0, decisions, main, [&] {
        const Uptime now = time.now();
        if (++readings == 2) {
            hasRead.set_value();
            overtaken.get_future().wait();
        }
        return now;
    });
    int runs = 0;
    throttle->throttle([&runs] { ++runs; });
    JoiningThread slow([this] { decisions.run(); });
    hasRead.get_future().wait();

    time.advance(1s);
    throttle->throttle([&runs] { ++runs; });
    decisions.run();
    overtaken.set_value();
    slow.join();
    main.run();
    EXPECT_EQ(runs, 2);
}

} // namespace
} // namespace orlimo
