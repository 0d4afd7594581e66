#include "watch/Throttle.h"

#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ProgramOutcomes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// The largest and the smallest number of seconds whose product with 1000 a 64-bit integer holds,
/// and their neighbours beyond.
constexpr double maxDelay = 9223372036854774.0;
constexpr double tooLongDelay = 9223372036854776.0;
constexpr double minDelay = -9223372036854776.0;
constexpr double tooNegativeDelay = -9223372036854778.0;

class ThrottleTest : public testing::Test
{
protected:
    [[nodiscard]] std::shared_ptr<Throttle> throttleOf(double delay)
    {
        return Throttle::create(delay, decisions, main, clock.function());
    }

    /// A throttle of 1.6 seconds that has been open for long.
    [[nodiscard]] std::shared_ptr<Throttle> openThrottle()
    {
        auto throttle = throttleOf(1.6);
        clock.advance(24h);
        return throttle;
    }

    /// Offers one call, runs all that follows, and returns whether the action ran.
    [[nodiscard]] bool accepts(Throttle& throttle)
    {
        int runs = 0;
        throttle.throttle([&runs] { ++runs; });
        decisions.run();
        main.run();
        EXPECT_LE(runs, 1);
        return runs == 1;
    }

    ManualClock clock;
    ManualQueue decisions;
    ManualQueue main;
};

struct Call
{
    std::chrono::nanoseconds wait; ///< since the call before, or construction
    bool isAccepted;
};

struct IntervalCase
{
    std::string name;
    double delay;
    std::vector<Call> calls;
    friend void PrintTo(const IntervalCase& given, std::ostream* stream) { *stream << given.name; }
};

class ThrottleInterval : public ThrottleTest, public testing::WithParamInterface<IntervalCase>
{};

TEST_P(ThrottleInterval, DecidesEachCall)
{
    const auto throttle = throttleOf(GetParam().delay);
    std::size_t number = 0;
    for (const auto& [wait, isAccepted] : GetParam().calls) {
        clock.advance(wait);
        EXPECT_EQ(accepts(*throttle), isAccepted) << "call " << number;
        ++number;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Delays,
    ThrottleInterval,
    testing::Values(
        IntervalCase{"OneSecondAfterConstruction", 1.6, {{0s, false}, {1s, false}}},
        IntervalCase{"TwoSecondsAfterConstruction", 1.6, {{2s, true}}},
        IntervalCase{"BoundaryAfterConstruction", 1.6, {{1600ms - 1ns, false}, {1ns, true}}},
        IntervalCase{
            "BoundaryAfterAcceptance",
            1.6,
            {{24h, true}, {1600ms, true}, {1600ms - 1ns, false}, {1ns, true}}},
        IntervalCase{"DroppedCallIsNotCounted", 1.6, {{24h, true}, {1s, false}, {700ms, true}}},
        IntervalCase{
            "DroppedCallsNeverExtendInterval",
            1.6,
            {{24h, true}, {400ms, false}, {400ms, false}, {400ms, false}, {400ms, true}}},
        IntervalCase{"Zero", 0, {{0s, true}, {0s, true}, {1ns, true}}},
        IntervalCase{"Negative", -1.6, {{0s, true}, {0s, true}, {1ns, true}}},
        IntervalCase{"OneMillisecond", 0.0016, {{1ms - 1ns, false}, {1ns, true}}},
        IntervalCase{"AlmostTwoMilliseconds", 0.0019999, {{1ms - 1ns, false}, {1ns, true}}},
        IntervalCase{"AlmostTwoSeconds", 1.9999, {{1999ms - 1ns, false}, {1ns, true}}},
        IntervalCase{"OneDay", 86400.0009, {{24h - 1ns, false}, {1ns, true}}},
        // Truncated to zero: a clock before the last acceptance is too early.
        IntervalCase{"HalfAMillisecond", 0.0004, {{0s, true}, {-1ns, false}}},
        IntervalCase{"AlmostAMillisecond", 0.000999, {{0s, true}, {-1ns, false}}},
        IntervalCase{"NegativeHalfMillisecond", -0.0004, {{0s, true}, {-1ns, false}}},
        IntervalCase{"NegativeMillisecond", -0.0016, {{-1ms - 1ns, false}, {1ns, true}}}),
    [](const auto& given) { return given.param.name; });

TEST_F(ThrottleTest, DelayBeyondUptimeNeverOpensOrIsAlwaysOpen)
{
    for (const double delay : {maxDelay, 9223372036855.0, minDelay, -9223372036855.0}) {
        const auto throttle = throttleOf(delay);
        const bool isOpen = delay < 0;
        EXPECT_EQ(accepts(*throttle), isOpen) << delay;
        const Uptime start = clock.now();
        clock.set(isOpen ? Uptime::min() : Uptime::max() - 1ns);
        EXPECT_EQ(accepts(*throttle), isOpen) << delay;
        EXPECT_EQ(accepts(*throttle), isOpen) << delay;
        clock.set(start);
    }
}

TEST_F(ThrottleTest, IntervalStartsAtDecision)
{
    const auto throttle = throttleOf(1.6);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; }); // offered while the throttle is closed
    clock.advance(1600ms);
    decisions.run();
    clock.advance(1600ms - 1ns);
    main.run();
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(accepts(*throttle));
    clock.advance(1ns);
    EXPECT_TRUE(accepts(*throttle));
}

TEST_F(ThrottleTest, OfferDecisionAndRunAreSeparateAndKeepAction)
{
    auto throttle = openThrottle();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> action = token;
    int runs = 0;
    throttle->throttle([token = std::move(token), &runs] { ++runs; });
    EXPECT_EQ(decisions.waiting(), 1U);
    EXPECT_EQ(main.waiting(), 0U);

    EXPECT_EQ(decisions.run(), 1U);
    throttle.reset(); // what was accepted still runs
    EXPECT_EQ(main.waiting(), 1U);
    EXPECT_EQ(runs, 0);
    EXPECT_FALSE(action.expired());

    EXPECT_EQ(main.run(), 1U);
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(action.expired());
}

TEST_F(ThrottleTest, ReleaseBeforeDecisionDropsAction)
{
    auto throttle = openThrottle();
    const std::weak_ptr<Throttle> observed = throttle;
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> action = token;
    throttle->throttle([token = std::move(token)] { FAIL() << "a dropped action runs"; });
    throttle.reset();
    EXPECT_TRUE(observed.expired());
    EXPECT_FALSE(action.expired());
    EXPECT_EQ(decisions.run(), 1U);
    EXPECT_TRUE(action.expired());
    EXPECT_EQ(main.run(), 0U);
}

/// Decisions share nothing but the time of the last acceptance: each reads it, reads the clock, and
/// exchanges it, starting over if another was faster. Two that overlap therefore have the same
/// result as one that is taken inside the other's clock, before or after the reading, so that no
/// threads are needed. Every combination of that and of time that passes is tried.
TEST_F(ThrottleTest, OverlappingDecisionsKeepTheInterval)
{
    for (const std::chrono::milliseconds delay : {0ms, 1600ms}) {
        for (unsigned schedule = 0; schedule < 1U << 14U; ++schedule) {
            unsigned choices = 0;
            Uptime now{};
            const auto overlap = [&] {
                if ((choices & 1U) != 0) {
                    decisions.run();
                }
                now += (choices & 2U) != 0 ? 800ms : 0ms;
                choices >>= 2U;
            };
            const double seconds = static_cast<double>(delay.count()) / 1000.0;
            const auto throttle = Throttle::create(seconds, decisions, main, [&] {
                overlap();
                const Uptime reading = now;
                overlap();
                return reading;
            });
            now += delay;
            const Uptime opened = now;
            choices = schedule;
            for (int call = 0; call < 3; ++call) {
                throttle->throttle([] {});
            }
            decisions.run();
            const auto accepted = static_cast<std::int64_t>(main.run());
            if (delay == 0ms) {
                ASSERT_EQ(accepted, 3) << "schedule " << schedule;
            } else {
                ASSERT_GE(accepted, 1) << "schedule " << schedule;
                ASSERT_LE(accepted, 1 + (now - opened) / delay) << "schedule " << schedule;
            }
        }
    }
}

/// Has eight threads offer 500 calls each to a throttle that decides in the background. Returns how
/// many actions ran once the others were dropped.
int runsOfConcurrentCalls(Throttle& throttle)
{
    std::atomic<int> runs = 0;
    std::atomic<int> ended = 0;
    const auto offer = [&] {
        const std::shared_ptr<void> token(nullptr, [&ended](void*) { ++ended; });
        throttle.throttle([&runs, token] {
            EXPECT_TRUE(isMainThread());
            ++runs;
        });
    };
    std::vector<JoiningThread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&offer] {
            for (int call = 0; call < 500; ++call) {
                offer();
            }
        });
    }
    EXPECT_TRUE(await([&ended] { return ended == 8 * 500; }));
    return runs;
}

TEST(ThrottleConcurrency, ZeroDelayRunsEveryCallOfAllThreadsOnMainThread)
{
    std::atomic<int> mainThreadReadings = 0;
    const auto throttle = Throttle::create(0, backgroundQueue(), mainQueue(), [&] {
        mainThreadReadings += isMainThread() ? 1 : 0;
        return currentUptime();
    });
    EXPECT_EQ(runsOfConcurrentCalls(*throttle), 8 * 500);
    EXPECT_EQ(mainThreadReadings, 1) << "construction's; decisions are taken in the background";
}

TEST(ThrottleConcurrency, OneOfThousandsOfSimultaneousCallsIsAccepted)
{
    ManualClock clock;
    const auto throttle = Throttle::create(3600, backgroundQueue(), mainQueue(), clock.function());
    for (int round = 1; round <= 5; ++round) {
        clock.advance(1h);
        ASSERT_EQ(runsOfConcurrentCalls(*throttle), 1) << "round " << round;
    }
}

// The fatal stops.

void expectStop(const std::function<void()>& work, const std::string& reason)
{
    EXPECT_THAT(
        work,
        testing::Throws<FatalStopException>(testing::AllOf(
            testing::Field(&FatalStopException::file, "watch/Throttle.cpp"),
            testing::Field(&FatalStopException::reason, reason))));
}

TEST_F(ThrottleTest, DelayBeyondRangeIsFatal)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double delay :
         {std::nan(""), infinity, -infinity, tooLongDelay, tooNegativeDelay, 1e300, -1e300})
    {
        SCOPED_TRACE(delay);
        expectStop(
            [&] { (void)throttleOf(delay); },
            "a throttle's delay is beyond what a time interval can hold");
    }
}

TEST_F(ThrottleTest, AcceptedActionOutsideMainThreadIsFatal)
{
    const auto throttle = openThrottle();
    throttle->throttle([] { FAIL() << "the action has run"; });
    decisions.run();
    JoiningThread([this] {
        expectStop([this] { main.run(); }, "an accepted call runs outside the main thread");
    });
}

} // namespace
} // namespace orlimo
