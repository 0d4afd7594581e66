#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/watch/ExhaustiveChoice.h"
#include "tests/watch/SteppedThread.h"
#include "watch/Throttle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// Where every step is watched, fewer are taken: what a sanitizer looks for comes soon or never.
#ifdef ORLIMO_SANITIZED
constexpr std::size_t ticksPerSchedule = 3;
constexpr std::size_t maxAcceptedPerSchedule = 1;
constexpr std::size_t simultaneousCalls = 2;
#else
constexpr std::size_t ticksPerSchedule = 5;
constexpr std::size_t maxAcceptedPerSchedule = 2;
constexpr std::size_t simultaneousCalls = 3;
#endif

constexpr double delay = 1.6;
constexpr std::chrono::milliseconds interval(1600);

/// A queue on which a test takes any of the work that waits, as one with many threads may.
class OutOfOrderQueue final : public Queue
{
public:
    void async(Work work) override { list.push_back(std::move(work)); }

    [[nodiscard]] std::size_t waiting() const { return list.size(); }

    [[nodiscard]] Work take(std::size_t index)
    {
        Work work = std::move(list.at(index));
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
        return work;
    }

private:
    std::deque<Work> list;
};

/// Calls that are offered one after the other, decided in any order, and run, while time passes in
/// between: one way of all this, and beside it what is to come of it.
class ThrottleSchedule
{
public:
    struct Size
    {
        std::size_t calls;
        /// How often the clock moves on, by half an interval each time.
        std::size_t ticks;
    };

    explicit ThrottleSchedule(const Size& scheduleSize)
        : size(scheduleSize)
        , throttle(Throttle::create(delay, decisions, main, clock.function()))
        , start(clock.now())
        , lastAccepted(start)
    {}

    /// Does the next thing, one of those that are possible. False when nothing is left to do.
    bool thaw(ExhaustiveChoice& choice)
    {
        const std::size_t offers = offered < size.calls ? 1 : 0;
        const std::size_t ticks = ticked < size.ticks ? 1 : 0;
        const std::size_t runs = main.waiting() > 0 ? 1 : 0;
        const std::size_t options = offers + ticks + runs + decisions.waiting();
        if (options == 0) {
            return false;
        }
        std::size_t taken = choice.choose(options);
        if (taken < decisions.waiting()) {
            decide(taken);
        } else if (taken -= decisions.waiting(); taken < offers) {
            offer();
        } else if (taken -= offers; taken < ticks) {
            ++ticked;
            clock.advance(interval / 2);
        } else {
            runFirst();
        }
        return true;
    }

    /// Whether everything so far was as it is to be.
    [[nodiscard]] bool isConsistent() const
    {
        return isConsistentSoFar && main.waiting() == accepted.size() - ran.size() &&
               std::equal(ran.begin(), ran.end(), accepted.begin());
    }

    [[nodiscard]] std::size_t acceptedCalls() const { return accepted.size(); }

private:
    void offer()
    {
        const std::size_t call = offered++;
        auto token = std::make_shared<int>(0);
        tokens.emplace_back(token);
        undecided.push_back(call);
        throttle->throttle([this, call, token = std::move(token)] { ran.push_back(call); });
    }

    void decide(std::size_t index)
    {
        const std::size_t call = undecided.at(index);
        undecided.erase(undecided.begin() + static_cast<std::ptrdiff_t>(index));
        decisions.take(index)();
        const bool isDue = clock.now() - lastAccepted >= interval;
        if (isDue) {
            lastAccepted = clock.now();
            accepted.push_back(call);
        }
        // What is not accepted is gone for good.
        isConsistentSoFar = isConsistentSoFar && tokens.at(call).expired() == !isDue;
    }

    void runFirst()
    {
        const std::size_t before = ran.size();
        main.runFirst();
        isConsistentSoFar =
            isConsistentSoFar && ran.size() == before + 1 && tokens.at(ran.back()).expired();
    }

    /// A main queue of which one piece of work at a time runs.
    class MainQueue final : public Queue
    {
    public:
        void async(Work work) override { list.push_back(std::move(work)); }
        [[nodiscard]] std::size_t waiting() const { return list.size(); }
        void runFirst()
        {
            const Work work = std::move(list.front());
            list.pop_front();
            work();
        }

    private:
        std::deque<Work> list;
    };

    Size size;
    ManualClock clock;
    OutOfOrderQueue decisions;
    MainQueue main;
    std::shared_ptr<Throttle> throttle;
    Uptime start;
    Uptime lastAccepted;
    std::size_t offered = 0;
    std::size_t ticked = 0;
    std::vector<std::weak_ptr<int>> tokens;
    std::vector<std::size_t> undecided;
    std::vector<std::size_t> accepted;
    std::vector<std::size_t> ran;
    bool isConsistentSoFar = true;
};

TEST(ThrottleInterleaving, EveryOrderOfOffersDecisionsRunsAndTimeGivesWhatIsToBe)
{
    ExhaustiveChoice choice;
    std::size_t schedules = 0;
    std::size_t maxAccepted = 0;
    do {
        ThrottleSchedule schedule({.calls = 3, .ticks = ticksPerSchedule});
        while (schedule.thaw(choice)) {
            ASSERT_TRUE(schedule.isConsistent()) << "course " << schedules;
        }
        maxAccepted = std::max(maxAccepted, schedule.acceptedCalls());
        ++schedules;
    } while (choice.next());
    RecordProperty("courses", std::to_string(schedules));
    std::cout << schedules << " courses\n";
    EXPECT_EQ(maxAccepted, maxAcceptedPerSchedule);
}

/// Decisions that are taken at the same time, from the moment on when a call is due: each may be
/// held up before it reads the clock, after it has read which call was accepted last, and once more
/// before it says that it is the next.
class ConcurrentSchedule
{
public:
    ConcurrentSchedule(std::size_t calls, std::size_t ticks)
        : ticksLeft(ticks)
        , throttle(Throttle::create(delay, decisions, main, [this] { return readClock(); }))
    {
        now += interval;
        readings.resize(calls);
        for (std::size_t call = 0; call < calls; ++call) {
            throttle->throttle([this, call] { accepted.push_back(call); });
        }
        for (std::size_t call = 0; call < calls; ++call) {
            threads.push_back(
                std::make_unique<SteppedThread>([this, call, work = decisions.take(0)]() mutable {
                    deciding = &readings.at(call);
                    work();
                    work = nullptr;
                }));
        }
    }

    bool thaw(ExhaustiveChoice& choice)
    {
        std::vector<SteppedThread*> going;
        for (const auto& thread : threads) {
            if (!thread->isDone()) {
                going.push_back(thread.get());
            }
        }
        const std::size_t options = going.size() + (ticksLeft > 0 ? 1 : 0);
        // Time that passes when everything is decided makes no difference.
        if (going.empty()) {
            return false;
        }
        const std::size_t taken = choice.choose(options);
        if (taken < going.size()) {
            going[taken]->step();
            // Single steps at a time: the order of the main queue is that of the acceptances.
            main.run();
        } else {
            --ticksLeft;
            now += interval / 2;
        }
        return true;
    }

    /// Whether the accepted calls are an interval apart, and no call was dropped without one of
    /// them less than an interval before it.
    [[nodiscard]] bool isConsistent() const
    {
        Uptime last = start;
        std::vector<Uptime> times{start};
        for (const std::size_t call : accepted) {
            const Uptime time = readings.at(call);
            if (time - last < interval) {
                return false;
            }
            last = time;
            times.push_back(time);
        }
        for (std::size_t call = 0; call < readings.size(); ++call) {
            const bool isDropped = std::ranges::find(accepted, call) == accepted.end();
            const bool hasReason = std::ranges::any_of(times, [&](Uptime time) {
                return time <= readings.at(call) && readings.at(call) - time < interval;
            });
            if (isDropped && !hasReason) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] std::size_t acceptedCalls() const { return accepted.size(); }

private:
    Uptime readClock()
    {
        SteppedThread::pause();
        const Uptime time = now;
        if (deciding != nullptr) {
            *deciding = time;
        }
        SteppedThread::pause();
        return time;
    }

    static thread_local Uptime* deciding;

    std::size_t ticksLeft;
    Uptime start{};
    Uptime now{};
    OutOfOrderQueue decisions;
    ManualQueue main;
    std::vector<Uptime> readings;
    std::vector<std::size_t> accepted;
    std::shared_ptr<Throttle> throttle;
    std::vector<std::unique_ptr<SteppedThread>> threads;
};

thread_local Uptime* ConcurrentSchedule::deciding = nullptr;

/// How many courses there are, each of which was right.
std::size_t concurrentSchedules(std::size_t calls, std::size_t ticks, std::size_t& maxAccepted)
{
    ExhaustiveChoice choice;
    std::size_t schedules = 0;
    bool right = true;
    do {
        ConcurrentSchedule schedule(calls, ticks);
        while (schedule.thaw(choice)) {
        }
        right = schedule.isConsistent();
        EXPECT_TRUE(right) << "course " << schedules;
        maxAccepted = std::max(maxAccepted, schedule.acceptedCalls());
        ++schedules;
    } while (right && choice.next());
    return schedules;
}

TEST(ThrottleInterleaving, EveryOrderOfTheStepsOfTwoDecisionsWhileTimePassesGivesWhatIsToBe)
{
    std::size_t maxAccepted = 0;
    const std::size_t schedules = concurrentSchedules(2, 3, maxAccepted);
    RecordProperty("courses", std::to_string(schedules));
    std::cout << schedules << " courses\n";
    EXPECT_EQ(maxAccepted, 2U);
}

TEST(ThrottleInterleaving, EveryOrderOfTheStepsOfDecisionsAtOneTimeGivesWhatIsToBe)
{
    std::size_t maxAccepted = 0;
    const std::size_t schedules = concurrentSchedules(simultaneousCalls, 0, maxAccepted);
    RecordProperty("courses", std::to_string(schedules));
    std::cout << schedules << " courses\n";
    EXPECT_EQ(maxAccepted, 1U);
}

} // namespace
} // namespace orlimo
