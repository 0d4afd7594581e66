#pragma once

#include <chrono>
#include <functional>

namespace orlimo {

/// A point in time on a clock that never runs backwards and that no change of the wall clock moves.
using Uptime = std::chrono::time_point<std::chrono::steady_clock, std::chrono::nanoseconds>;

/// Returns the current time. Any thread. Injected wherever time matters, so that tests control
/// it.
using UptimeClock = std::function<Uptime()>;

/// The system's clock.
[[nodiscard]] Uptime currentUptime();

} // namespace orlimo
