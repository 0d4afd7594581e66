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

/// A dispatch library that does nothing by itself: it records what is called, and a test runs its
/// queues, moves its clock and has its source fire. Main thread.
struct ScriptedDispatch
{
    using Task = std::function<void()>;

    /// A vnode source or a timer.
    struct Source
    {
        std::uintptr_t handle = 0;
        std::uintptr_t mask = 0;
        /// The name of the queue that it was made with.
        std::string queue;
        bool isTimer = false;
        Task eventHandler;
        Task cancelHandler;
        std::uintptr_t pending = 0;
        std::uintptr_t data = 0;
        bool active = false;
        bool cancelled = false;
        bool released = false;
        /// When a timer fires next, and how late it may be.
        std::optional<Uptime> due;
        std::chrono::nanoseconds leeway{};
    };

    /// The one that the library's functions lead to.
    [[nodiscard]] static ScriptedDispatch& shared();

    /// Forgets everything.
    void reset();

    /// Runs what is on a queue, what that adds included.
    void run(const std::string& queue = "main");

    /// Moves the clock; what becomes due goes to its queue.
    void advance(std::chrono::nanoseconds span);

    /// The first timer that has neither been cancelled nor released; null where there is none.
    [[nodiscard]] const Source* timer() const;

    /// Has the file of the first source undergo `events`: merged into what its handler has not been
    /// called for yet.
    void fire(std::uintptr_t events);

    /// Calls for sources, but for those for timers.
    std::vector<std::string> calls;
    Uptime now{std::chrono::hours(1)};
    std::map<std::string, std::deque<Task>> queues;
    /// In the order in which they were made; what was released stays.
    std::deque<Source> sources;
};

} // namespace orlimo
