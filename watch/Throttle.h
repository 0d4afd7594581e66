#pragma once

#include "platform/threads/Queue.h"
#include "platform/threads/UptimeClock.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace orlimo {

/// Limits how often an action may run: a call is accepted only if at least `delay` has passed since
/// the last accepted one, or since construction. Every other call is dropped for good; there is no
/// trailing run.
class Throttle : public std::enable_shared_from_this<Throttle>
{
public:
    using Action = std::function<void()>;

    /// A throttle of `delay` seconds, truncated to whole milliseconds. Its clock starts now.
    /// Decisions are taken on `decisions`, accepted actions run on `main`; both must outlive it. A
    /// delay that is NaN or beyond the range of 64-bit milliseconds is a fatal stop.
    [[nodiscard]] static std::shared_ptr<Throttle>
    create(double delay, Queue& decisions, Queue& main, UptimeClock clock);

    /// Offers one call and returns at once. The action runs later, on the main thread, or is
    /// dropped; it is kept alive until then. A throttle that was destroyed before the decision
    /// drops the action. Any thread.
    void throttle(Action action);

private:
    Throttle(double delayInSeconds, Queue& decisions, Queue& main, UptimeClock uptimeClock);

    void decide(Action action);
    [[nodiscard]] bool accept();

    UptimeClock clock;
    std::atomic<Uptime> lastFireTime;
    Queue& queue;
    std::chrono::milliseconds delay;
    Queue& mainQueue;
};

} // namespace orlimo
