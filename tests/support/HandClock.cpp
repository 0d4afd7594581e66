#include "tests/support/HandClock.h"

namespace orlimo {

HandClock::HandClock()
    : state(std::make_shared<State>())
{
    // A machine that has been up for an hour.
    state->time = Uptime(std::chrono::hours(1));
}

void HandClock::advance(std::chrono::nanoseconds span)
{
    const std::lock_guard guard(state->mutex);
    state->time += span;
}

void HandClock::set(Uptime time)
{
    const std::lock_guard guard(state->mutex);
    state->time = time;
}

Uptime HandClock::now() const
{
    const std::lock_guard guard(state->mutex);
    return state->time;
}

UptimeClock HandClock::function() const
{
    return [shared = state] {
        const std::lock_guard guard(shared->mutex);
        return shared->time;
    };
}

} // namespace orlimo
