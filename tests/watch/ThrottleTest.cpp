#include "watch/Throttle.h"

#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <memory>
#include <thread>
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

    /// A throttle that was built so long ago that it is open.
    [[nodiscard]] std::shared_ptr<Throttle> openThrottleOf(double delay)
    {
        auto throttle = throttleOf(delay);
        clock.advance(24h);
        return throttle;
    }

    /// Offers one call, runs whatever follows, and tells whether the action ran.
    [[nodiscard]] bool accepts(Throttle& throttle)
    {
        int runs = 0;
        throttle.throttle([&runs] { ++runs; });
        decisions.run();
        main.run();
        EXPECT_LE(runs, 1);
        return runs == 1;
    }

    /// The same `span` after an accepted call.
    [[nodiscard]] bool acceptsAfter(std::chrono::nanoseconds span, Throttle& throttle)
    {
        clock.advance(span);
        return accepts(throttle);
    }

    ManualClock clock;
    ManualQueue decisions;
    ManualQueue main;
};

TEST_F(ThrottleTest, IsClosedWhenItIsNew)
{
    const auto throttle = throttleOf(1.6);
    EXPECT_FALSE(accepts(*throttle));
}

TEST_F(ThrottleTest, DropsACallOneSecondAfterConstruction)
{
    const auto throttle = throttleOf(1.6);
    EXPECT_FALSE(acceptsAfter(1s, *throttle));
}

TEST_F(ThrottleTest, AcceptsACallTwoSecondsAfterConstruction)
{
    const auto throttle = throttleOf(1.6);
    EXPECT_TRUE(acceptsAfter(2s, *throttle));
}

TEST_F(ThrottleTest, MeasuresFromTheAcceptedCallAndNotFromADroppedOne)
{
    const auto throttle = openThrottleOf(1.6);
    EXPECT_TRUE(accepts(*throttle));
    EXPECT_FALSE(acceptsAfter(1s, *throttle));
    EXPECT_TRUE(acceptsAfter(700ms, *throttle));
}

TEST_F(ThrottleTest, DroppedCallsNeverExtendTheInterval)
{
    const auto throttle = openThrottleOf(1.6);
    EXPECT_TRUE(accepts(*throttle));
    for (int call = 0; call < 15; ++call) {
        EXPECT_FALSE(acceptsAfter(100ms, *throttle)) << call;
    }
    EXPECT_TRUE(acceptsAfter(100ms, *throttle));
}

TEST_F(ThrottleTest, AcceptsACallExactlyOnTheBoundary)
{
    const auto throttle = openThrottleOf(1.6);
    EXPECT_TRUE(accepts(*throttle));
    EXPECT_TRUE(acceptsAfter(1600ms, *throttle));
    EXPECT_TRUE(acceptsAfter(1600ms, *throttle));
}

TEST_F(ThrottleTest, DropsACallOneNanosecondBeforeTheBoundary)
{
    const auto throttle = openThrottleOf(1.6);
    EXPECT_TRUE(accepts(*throttle));
    EXPECT_FALSE(acceptsAfter(1600ms - 1ns, *throttle));
    EXPECT_TRUE(acceptsAfter(1ns, *throttle));
}

TEST_F(ThrottleTest, OpensExactlyOneIntervalAfterConstruction)
{
    const auto throttle = throttleOf(1.6);
    EXPECT_FALSE(acceptsAfter(1600ms - 1ns, *throttle));
    EXPECT_TRUE(acceptsAfter(1ns, *throttle));
}

TEST_F(ThrottleTest, RunsNothingLaterForTheCallsOfABurst)
{
    const auto throttle = openThrottleOf(1.6);
    int runs = 0;
    for (int call = 0; call < 100; ++call) {
        throttle->throttle([&runs] { ++runs; });
        clock.advance(1ms);
    }
    decisions.run();
    main.run();
    EXPECT_EQ(runs, 1);

    clock.advance(1h);
    EXPECT_EQ(decisions.run(), 0U);
    EXPECT_EQ(main.run(), 0U);
    EXPECT_EQ(runs, 1);
}

TEST_F(ThrottleTest, TakesADelayOfNothingToAcceptEveryCall)
{
    const auto throttle = throttleOf(0);
    for (int call = 0; call < 5; ++call) {
        EXPECT_TRUE(accepts(*throttle)) << "while the clock stands still";
    }
    EXPECT_TRUE(acceptsAfter(1ns, *throttle));
}

TEST_F(ThrottleTest, TakesANegativeDelayToAcceptEveryCall)
{
    const auto throttle = throttleOf(-1.6);
    for (int call = 0; call < 5; ++call) {
        EXPECT_TRUE(accepts(*throttle)) << "while the clock stands still";
    }
    EXPECT_TRUE(acceptsAfter(1ns, *throttle));
}

TEST_F(ThrottleTest, TruncatesTheDelayToWholeMilliseconds)
{
    struct Case
    {
        double delay;
        std::chrono::milliseconds interval;
    };
    for (const auto& [delay, interval] : std::vector<Case>{
             {1.6, 1600ms},
             {0.0016, 1ms},
             {0.0019999, 1ms},
             {0.001, 1ms},
             {1.9999, 1999ms},
             {86400.0009, 86400000ms}})
    {
        const auto throttle = throttleOf(delay);
        EXPECT_FALSE(acceptsAfter(interval - 1ns, *throttle)) << delay;
        EXPECT_TRUE(acceptsAfter(1ns, *throttle)) << delay;
    }
}

TEST_F(ThrottleTest, TruncatesLessThanAMillisecondToNothing)
{
    for (const double delay : {0.0004, 0.000999, -0.0004, -0.000999}) {
        const auto throttle = throttleOf(delay);
        EXPECT_TRUE(accepts(*throttle)) << delay << " while the clock stands still";

        // Nothing is not less than nothing: what comes before the last acceptance is too early.
        clock.advance(-1ns);
        EXPECT_FALSE(accepts(*throttle)) << delay;
    }
}

TEST_F(ThrottleTest, TruncatesANegativeDelayTowardsZero)
{
    const auto throttle = throttleOf(-0.0016);
    clock.advance(-1ms - 1ns);
    EXPECT_FALSE(accepts(*throttle));
    clock.advance(1ns);
    EXPECT_TRUE(accepts(*throttle));
}

TEST_F(ThrottleTest, NeverOpensWithTheLongestDelay)
{
    for (const double delay : {maxDelay, 9223372036855.0, 300.0 * 366 * 86400}) {
        const auto throttle = throttleOf(delay);
        const Uptime start = clock.now();
        EXPECT_FALSE(accepts(*throttle)) << delay;
        clock.set(Uptime::max() - 1ns);
        EXPECT_FALSE(accepts(*throttle)) << delay;
        clock.set(start);
    }
}

TEST_F(ThrottleTest, IsAlwaysOpenWithTheMostNegativeDelay)
{
    for (const double delay : {minDelay, -9223372036855.0, -300.0 * 366 * 86400}) {
        const auto throttle = throttleOf(delay);
        const Uptime start = clock.now();
        EXPECT_TRUE(accepts(*throttle)) << delay;
        clock.set(Uptime::min());
        EXPECT_TRUE(accepts(*throttle)) << delay;
        EXPECT_TRUE(accepts(*throttle)) << delay;
        clock.set(start);
    }
}

TEST_F(ThrottleTest, CountsFromTheTimeOfTheDecisionAndNotOfTheOffer)
{
    const auto throttle = openThrottleOf(1.6);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; });
    clock.advance(5s);
    decisions.run();

    EXPECT_FALSE(acceptsAfter(1600ms - 1ns, *throttle));
    EXPECT_TRUE(acceptsAfter(1ns, *throttle));
    EXPECT_EQ(runs, 1);
}

TEST_F(ThrottleTest, CountsFromTheDecisionAlsoWhenTheActionRunsMuchLater)
{
    const auto throttle = openThrottleOf(1.6);
    throttle->throttle([] {});
    decisions.run();
    clock.advance(1600ms);
    main.run();
    EXPECT_TRUE(accepts(*throttle));
}

TEST_F(ThrottleTest, DecidesWhenTheDecisionIsDue)
{
    const auto throttle = throttleOf(1.6);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; }); // offered while the throttle is closed
    clock.advance(1600ms);
    decisions.run(); // decided when it is open
    main.run();
    EXPECT_EQ(runs, 1);
}

TEST_F(ThrottleTest, OffersWithoutDecidingOrRunning)
{
    const auto throttle = openThrottleOf(1.6);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; });
    EXPECT_EQ(decisions.waiting(), 1U);
    EXPECT_EQ(main.waiting(), 0U);
    EXPECT_EQ(runs, 0);

    EXPECT_EQ(decisions.run(), 1U);
    EXPECT_EQ(main.waiting(), 1U);
    EXPECT_EQ(runs, 0);

    EXPECT_EQ(main.run(), 1U);
    EXPECT_EQ(runs, 1);
}

TEST_F(ThrottleTest, RunsAcceptedActionsInTheOrderOfAcceptance)
{
    const auto throttle = throttleOf(0);
    std::vector<int> order;
    for (int call = 0; call < 10; ++call) {
        throttle->throttle([&order, call] { order.push_back(call); });
    }
    decisions.run();
    main.run();
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(ThrottleTest, KeepsTheActionAliveUntilItHasRun)
{
    const auto throttle = openThrottleOf(1.6);
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    throttle->throttle([token] { ++*token; });
    token.reset();

    EXPECT_FALSE(kept.expired());
    decisions.run();
    EXPECT_FALSE(kept.expired());
    main.run();
    EXPECT_TRUE(kept.expired());
}

TEST_F(ThrottleTest, DropsTheActionOfARejectedCallAtTheDecision)
{
    const auto throttle = throttleOf(1.6);
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    throttle->throttle([token] { ++*token; });
    token.reset();

    EXPECT_FALSE(kept.expired());
    decisions.run();
    EXPECT_TRUE(kept.expired());
    EXPECT_EQ(main.waiting(), 0U);
}

TEST_F(ThrottleTest, DropsTheActionSilentlyWhenItIsReleasedBeforeTheDecision)
{
    auto throttle = openThrottleOf(1.6);
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    int runs = 0;
    throttle->throttle([token, &runs] { ++runs; });
    token.reset();

    throttle.reset();
    EXPECT_FALSE(kept.expired());
    EXPECT_EQ(decisions.run(), 1U);
    EXPECT_TRUE(kept.expired());
    EXPECT_EQ(main.run(), 0U);
    EXPECT_EQ(runs, 0);
}

TEST_F(ThrottleTest, IsNotKeptAliveByWhatIsOffered)
{
    auto throttle = openThrottleOf(1.6);
    const std::weak_ptr<Throttle> observed = throttle;
    throttle->throttle([] {});
    throttle.reset();
    EXPECT_TRUE(observed.expired());
    decisions.run();
}

TEST_F(ThrottleTest, RunsAnAcceptedActionAlsoWhenItIsReleasedAfterTheDecision)
{
    auto throttle = openThrottleOf(1.6);
    int runs = 0;
    throttle->throttle([&runs] { ++runs; });
    decisions.run();
    throttle.reset();
    main.run();
    EXPECT_EQ(runs, 1);
}

TEST_F(ThrottleTest, TakesAnOfferFromInsideAnAction)
{
    const auto throttle = openThrottleOf(1.6);
    int inner = 0;
    throttle->throttle([&] { throttle->throttle([&inner] { ++inner; }); });
    decisions.run();
    main.run();
    clock.advance(1600ms);
    decisions.run();
    main.run();
    EXPECT_EQ(inner, 1);
}

using ThrottleDeathTest = ThrottleTest;

TEST_F(ThrottleDeathTest, StopsForADelayThatNoIntervalCanHold)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double delay :
         {std::nan(""), infinity, -infinity, tooLongDelay, tooNegativeDelay, 1e300, -1e300})
    {
        EXPECT_EXIT(
            (void)throttleOf(delay),
            testing::KilledBySignal(SIGABRT),
            "^Orlimo stops at watch/Throttle.cpp:[0-9]+: "
            "a throttle's delay is beyond what a time interval can hold\n")
            << delay;
    }
}

TEST_F(ThrottleDeathTest, StopsWhenAnAcceptedActionRunsOutsideTheMainThread)
{
    const auto throttle = openThrottleOf(1.6);
    throttle->throttle([] { (void)std::fputs("the action has run\n", stderr); });
    decisions.run();
    EXPECT_EXIT(
        std::thread([this] { main.run(); }).join(),
        testing::KilledBySignal(SIGABRT),
        "^Orlimo stops at watch/Throttle.cpp:[0-9]+: "
        "an accepted call runs outside the main thread\n$");
}

} // namespace
} // namespace orlimo
