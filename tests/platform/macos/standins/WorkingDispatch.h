#pragma once

#include <cstddef>

namespace orlimo {

/// A descriptor that can be read from while there is work on the main dispatch queue.
[[nodiscard]] int mainDispatchQueueHandle();

/// Runs what is on the main dispatch queue, what that adds included, as the event loop does where
/// it drains that queue. Returns how much it was. Main thread.
std::size_t drainMainDispatchQueue();

} // namespace orlimo
