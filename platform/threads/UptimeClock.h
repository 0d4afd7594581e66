#pragma once

#include <chrono>
#include <functional>

namespace orlimo {

/// A point in time on a clock that never runs backwards and that no change of the wall clock moves.
using Uptime = std::chrono::time_point<std::chrono::steady_clock, std::chrono::nanoseconds>;

/// Tells the present time; may be called on any thread. Handed in wherever time decides something,
/// so that tests move it by hand.
using UptimeClock = std::function<Uptime()>;

/// The host's own clock.
[[nodiscard]] Uptime currentUptime();

} // namespace orlimo
