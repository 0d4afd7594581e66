#pragma once

#include "platform/threads/UptimeClock.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A fake dispatch library: it records calls, and a test runs its queues, advances its clock and
/// fires its source. Main thread.
struct ScriptedDispatch
{
    using Task = std::function<void()>;

    /// A vnode source or a timer.
    struct Source
    {
        std::uintptr_t handle = 0;
        std::uintptr_t mask = 0;
        /// The name of its queue.
        std::string queue;
        bool isTimer = false;
        Task eventHandler;
        Task cancelHandler;
        std::uintptr_t pending = 0;
        std::uintptr_t data = 0;
        bool active = false;
        bool cancelled = false;
        bool released = false;
        /// When a timer fires next, and its leeway.
        std::optional<Uptime> due;
        std::chrono::nanoseconds leeway{};
    };

    /// The instance behind the library's functions.
    [[nodiscard]] static ScriptedDispatch& shared();

    void reset();
    /// Runs a queue until it is empty.
    void run(const std::string& queue = "main");
    /// Advances the clock and enqueues what becomes due.
    void advance(std::chrono::nanoseconds span);
    /// The first timer that is neither cancelled nor released; null if there is none.
    [[nodiscard]] const Source* timer() const;
    /// Reports `events` of the first source's file, merged with those not yet handled.
    void fire(std::uintptr_t events);

    /// Calls concerning sources, except timers.
    std::vector<std::string> calls;
    Uptime now{std::chrono::hours(1)};
    std::map<std::string, std::deque<Task>> queues;
    /// In order of creation, including released ones.
    std::deque<Source> sources;
};

} // namespace orlimo
