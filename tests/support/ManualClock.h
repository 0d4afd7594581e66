#pragma once

#include "platform/threads/UptimeClock.h"

#include <chrono>
#include <memory>
#include <mutex>

namespace orlimo {

/// A clock that stands still until a test moves it. Any thread.
class ManualClock
{
public:
    ManualClock();

    void advance(std::chrono::nanoseconds span);
    void set(Uptime time);
    [[nodiscard]] Uptime now() const;

    /// The function to hand in; it may outlive this object.
    [[nodiscard]] UptimeClock function() const;

private:
    struct State
    {
        std::mutex mutex;
        Uptime time;
    };
    std::shared_ptr<State> state;
};

} // namespace orlimo
