#include "watch/Throttle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// Enumerates every combination of the choices that a piece of work makes: the work is run again,
/// making the same choices, until next() returns false.
class ExhaustiveChoice
{
public:
    /// A number below `options`, which is not 0.
    [[nodiscard]] std::size_t choose(std::size_t options)
    {
        if (position == choices.size()) {
            choices.push_back({.taken = 0, .options = options});
        }
        return choices[position++].taken;
    }

    /// Moves on to the next combination. False when all of them have been taken.
    [[nodiscard]] bool next()
    {
        position = 0;
        while (!choices.empty() && choices.back().taken + 1 == choices.back().options) {
            choices.pop_back();
        }
        if (choices.empty()) {
            return false;
        }
        ++choices.back().taken;
        return true;
    }

private:
    struct Choice
    {
        std::size_t taken;
        std::size_t options;
    };

    std::vector<Choice> choices;
    std::size_t position = 0;
};

/// A queue from which a test takes any of the pending work, as a pool of threads might.
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

/// What a schedule is made of.
struct ScheduleSize
{
    std::chrono::milliseconds delay;
    std::size_t calls;
    /// How often time moves on, by 800 milliseconds each.
    std::size_t ticks;
    /// How long the throttle exists before the first call.
    std::chrono::milliseconds age = 0ms;
    /// Whether decisions overlap; all calls are then offered at the start and run at the end.
    bool overlapping = false;
};

/// One order of offers, decisions, runs and ticks.
///
/// Decisions share nothing but the time of the last acceptance: each reads it, reads the clock, and
/// exchanges it, starting over if another was faster. Two decisions that overlap therefore have the
/// same result as one that begins and ends while the other reads the clock. So a decision is taken
/// inside another's clock, before or after the reading, and no threads are needed.
class ThrottleSchedule
{
public:
    ThrottleSchedule(const ScheduleSize& scheduleSize, ExhaustiveChoice& exhaustiveChoice)
        : size(scheduleSize)
        , choice(exhaustiveChoice)
        , readings(size.calls)
        , throttle(Throttle::create(
              static_cast<double>(size.delay.count()) / 1000.0, decisions, main, [this] {
                  return readClock();
              }))
    {
        now += size.age;
        while (size.overlapping && offered < size.calls) {
            offer();
        }
    }

    void run()
    {
        while (step(false)) {
        }
    }

    /// Whether accepted calls ran once, in order, and are an interval apart; every other call was
    /// dropped at its decision because an acceptance was less than an interval ago.
    [[nodiscard]] bool isConsistent() const
    {
        std::vector<Uptime> acceptances{Uptime{}};
        for (const std::size_t call : ran) {
            if (readings[call] - acceptances.back() < size.delay) {
                return false;
            }
            acceptances.push_back(readings[call]);
        }
        for (std::size_t call = 0; call < size.calls; ++call) {
            const bool isDue = std::ranges::none_of(acceptances, [&](Uptime acceptance) {
                return acceptance <= readings[call] && readings[call] - acceptance < size.delay;
            });
            const auto runs = std::ranges::count(ran, call);
            const bool wasKept = std::ranges::find(kept, call) != kept.end();
            if (runs > 1 || wasKept != (runs == 1) || (isDue && runs == 0)) {
                return false;
            }
        }
        return isReleasedAfterRun;
    }

    [[nodiscard]] std::size_t acceptedCalls() const { return ran.size(); }

private:
    /// Does one of the things that are possible next. False when there is none, or when a decision
    /// that is held up, in whose clock this is called, goes on.
    bool step(bool isHeldUp)
    {
        const std::size_t pending = decisions.waiting();
        const std::size_t offers = offered < size.calls && !isHeldUp ? 1 : 0;
        // Once everything is decided, time makes no difference.
        const bool isUndecided = isHeldUp || offers + pending > 0;
        const std::size_t ticks = isUndecided && ticked < size.ticks ? 1 : 0;
        const bool mayRun = !isHeldUp && (!size.overlapping || pending + ticks == 0);
        const std::size_t runs = mayRun && main.waiting() > 0 ? 1 : 0;
        const std::size_t options = pending + offers + ticks + runs + (isHeldUp ? 1 : 0);
        const std::size_t taken = options > 0 ? choice.choose(options) : 0;
        if (taken < pending) {
            decide(taken);
        } else if (taken < pending + offers) {
            offer();
        } else if (taken < pending + offers + ticks) {
            ++ticked;
            now += 800ms;
        } else if (taken < pending + offers + ticks + runs) {
            main.take(0)();
            isReleasedAfterRun = isReleasedAfterRun && tokens[ran.back()].expired();
        } else {
            return false;
        }
        return true;
    }

    void overlap()
    {
        while (size.overlapping && step(true)) {
        }
    }

    Uptime readClock()
    {
        if (decided == nullptr) {
            return now; // at construction
        }
        Uptime& reading = *decided;
        overlap();
        const Uptime time = now;
        reading = time;
        overlap();
        return time;
    }

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
        auto* const outer = std::exchange(decided, &readings[call]);
        decisions.take(index)();
        decided = outer;
        if (!tokens[call].expired()) {
            kept.push_back(call);
        }
    }

    ScheduleSize size;
    ExhaustiveChoice& choice;
    Uptime now{};
    Uptime* decided = nullptr; ///< where the present decision's reading of the clock goes
    OutOfOrderQueue decisions;
    OutOfOrderQueue main;
    std::size_t offered = 0;
    std::size_t ticked = 0;
    std::vector<Uptime> readings;
    std::vector<std::weak_ptr<int>> tokens; ///< one in each action
    std::vector<std::size_t> undecided;
    std::vector<std::size_t> kept; ///< calls whose action outlived the decision
    std::vector<std::size_t> ran;
    bool isReleasedAfterRun = true;
    std::shared_ptr<Throttle> throttle;
};

/// The most calls accepted in any schedule of that size, each of which is checked.
std::size_t maxAccepted(const ScheduleSize& size)
{
    ExhaustiveChoice choice;
    std::size_t schedules = 0;
    std::size_t most = 0;
    bool isConsistent = true;
    do {
        ThrottleSchedule schedule(size, choice);
        schedule.run();
        isConsistent = schedule.isConsistent();
        EXPECT_TRUE(isConsistent) << "schedule " << schedules;
        most = std::max(most, schedule.acceptedCalls());
        ++schedules;
    } while (isConsistent && choice.next());
    return most;
}

TEST(ThrottleInterleaving, DecisionsInAnyOrderKeepTheInterval)
{
    struct Case
    {
        ScheduleSize size;
        std::size_t accepted;
    };
    for (const auto& [size, accepted] : std::vector<Case>{
             {{.delay = 1600ms, .calls = 3, .ticks = 4}, 2},
             {{.delay = 1600ms, .calls = 3, .ticks = 3, .age = 1600ms, .overlapping = true}, 2},
             {{.delay = 1600ms, .calls = 3, .ticks = 1, .age = 1600ms, .overlapping = true}, 1},
             {{.delay = 0ms, .calls = 3, .ticks = 1, .overlapping = true}, 3}})
    {
        SCOPED_TRACE(testing::Message() << size.ticks << " ticks, " << size.delay.count() << " ms");
        EXPECT_EQ(maxAccepted(size), accepted);
    }
}

} // namespace
} // namespace orlimo
