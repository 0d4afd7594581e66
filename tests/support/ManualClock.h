#pragma once

#include "platform/threads/UptimeClock.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace orlimo {

/// A clock that stands still until a test moves it. Any thread reads it, one moves it.
class ManualClock
{
public:
    void advance(std::chrono::nanoseconds span) { *time = now() + span; }
    void set(Uptime moment) { *time = moment; }
    [[nodiscard]] Uptime now() const { return *time; }

    /// The function to hand in; it may outlive this object.
    [[nodiscard]] UptimeClock function() const
    {
        return [shared = time] { return shared->load(); };
    }

private:
    /// On a machine that has been up for an hour.
    std::shared_ptr<std::atomic<Uptime>> time =
        std::make_shared<std::atomic<Uptime>>(Uptime(std::chrono::hours(1)));
};

} // namespace orlimo
