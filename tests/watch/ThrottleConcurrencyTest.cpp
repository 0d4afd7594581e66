#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "watch/Throttle.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// Threads that run `work` a number of times each; joined when the vector goes.
std::vector<JoiningThread> threadsRunning(const std::function<void()>& work, int times)
{
    std::vector<JoiningThread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([work, times] {
            for (int time = 0; time < times; ++time) {
                work();
            }
        });
    }
    return threads;
}

/// Offers calls and counts what happens to each.
class CallCounter
{
public:
    void offerTo(Throttle& throttle)
    {
        ++offered;
        const std::shared_ptr<void> token(nullptr, [this](void*) { ++ended; });
        throttle.throttle([this, token] {
            ++run;
            offMainThreadRuns += isMainThread() ? 0 : 1;
        });
    }

    /// Runs the event loop until every offered action has run or was dropped.
    [[nodiscard]] bool awaitAll() const
    {
        return await([this] { return ended == offered; });
    }

    std::atomic<int> offered = 0;
    std::atomic<int> run = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> offMainThreadRuns = 0;
};

TEST(ThrottleConcurrency, ZeroDelayRunsEveryCallOfAllThreadsOnMainThread)
{
    std::atomic<int> mainThreadReadings = 0;
    CallCounter counter;
    const auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), [&] {
        mainThreadReadings += isMainThread() ? 1 : 0;
        return currentUptime();
    });
    threadsRunning([&] { counter.offerTo(*throttle); }, 500).clear();
    counter.offerTo(*throttle);

    ASSERT_TRUE(counter.awaitAll());
    EXPECT_EQ(counter.run, 8 * 500 + 1);
    EXPECT_EQ(counter.offMainThreadRuns, 0);
    EXPECT_EQ(mainThreadReadings, 1) << "construction's; decisions are taken in the background";
}

TEST(ThrottleConcurrency, OneOfThousandsOfSimultaneousCallsIsAccepted)
{
    ManualClock clock;
    const auto throttle = Throttle::create(3600, backgroundQueue(), mainQueue(), clock.function());
    for (int round = 1; round <= 5; ++round) {
        CallCounter counter;
        clock.advance(1h);
        threadsRunning([&] { counter.offerTo(*throttle); }, 500).clear();
        ASSERT_TRUE(counter.awaitAll());
        EXPECT_EQ(counter.run, 1) << "round " << round;
    }
}

} // namespace
} // namespace orlimo
