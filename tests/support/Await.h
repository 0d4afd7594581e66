#pragma once

#include <chrono>
#include <functional>

namespace orlimo {

/// How long a test waits for something that is to happen. Only a broken program ever takes so long.
inline constexpr std::chrono::seconds defaultTimeout{60};

/// How long a tool that is not ours may take: much less, so that a test can try again and say so.
inline constexpr std::chrono::seconds toolTimeout{10};

/// Runs the event loop until `condition` holds. False when it does not within `limit`.
[[nodiscard]] bool
await(const std::function<bool()>& condition, std::chrono::milliseconds limit = defaultTimeout);

/// The same for a condition that makes work for the program under test each time it is looked at:
/// with time between the looks.
[[nodiscard]] bool awaitWithPolling(
    const std::function<bool()>& condition, std::chrono::milliseconds limit = defaultTimeout);

/// Runs the event loop for `span`, for a test that shows that something does not happen.
void runEventLoop(std::chrono::milliseconds span);

} // namespace orlimo
