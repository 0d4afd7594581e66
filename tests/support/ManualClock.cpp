#include "tests/support/ManualClock.h"

namespace orlimo {

ManualClock::ManualClock()
    : state(std::make_shared<State>())
{
    // A machine that has been up for an hour.
    state->time = Uptime(std::chrono::hours(1));
}

void ManualClock::advance(std::chrono::nanoseconds span)
{
    const std::lock_guard guard(state->mutex);
    state->time += span;
}

void ManualClock::set(Uptime time)
{
    const std::lock_guard guard(state->mutex);
    state->time = time;
}

Uptime ManualClock::now() const
{
    const std::lock_guard guard(state->mutex);
    return state->time;
}

UptimeClock ManualClock::function() const
{
    return [shared = state] {
        const std::lock_guard guard(shared->mutex);
        return shared->time;
    };
}

} // namespace orlimo
