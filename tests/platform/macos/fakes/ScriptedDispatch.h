#pragma once

#include "platform/UptimeClock.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// A dispatch library that does nothing by itself: it notes what is called, and a test runs its
/// queues, moves its clock and has its sources fire. Main thread.
class ScriptedDispatch
{
public:
    using Task = std::function<void()>;

    /// What is known of one source that was made.
    struct Source
    {
        std::uintptr_t handle;
        std::uintptr_t mask;
        /// The name of the queue that it was made with.
        std::string queue;
        Task eventHandler;
        Task cancelHandler;
        std::uintptr_t pending = 0;
        std::uintptr_t data = 0;
        int references = 1;
        bool active = false;
        bool cancelled = false;
        /// For a timer: whether it is strict, when it fires next, and how late it may be.
        bool isTimer = false;
        bool isStrict = false;
        std::optional<Uptime> due;
        std::chrono::nanoseconds leeway{};
    };

    /// The one that the library's functions lead to.
    [[nodiscard]] static ScriptedDispatch& shared();

    /// Forgets everything.
    void reset() { *this = ScriptedDispatch(); }

    /// One call that was made of a source, and where the read position of its file was then.
    struct Call
    {
        std::string name;
        long position;
    };

    /// Notes a call of the source for `handle`.
    void note(const std::string& name, std::uintptr_t handle);
    [[nodiscard]] std::vector<std::string> namesOfCalls() const;
    [[nodiscard]] std::vector<long> positionsAtCalls() const;

    void add(const std::string& queue, Task task) { queues[queue].push_back(std::move(task)); }

    /// Runs what is on a queue, what that adds included, and returns how much it was.
    std::size_t run(const std::string& queue);
    std::size_t runMainQueue() { return run("main"); }
    [[nodiscard]] std::size_t waitingOnMainQueue() { return queues["main"].size(); }

    /// Moves the clock; what becomes due goes to its queue.
    void advance(std::chrono::nanoseconds span);
    [[nodiscard]] Uptime now() const { return time; }
    [[nodiscard]] UptimeClock clock() const;
    /// How long after now each timer that has been set fires.
    [[nodiscard]] std::vector<std::chrono::nanoseconds> delays() const;

    /// The timers that have neither been cancelled nor released.
    [[nodiscard]] std::vector<Source> timers() const;

    /// Adds a source and returns its number.
    std::size_t addSource(Source source);
    [[nodiscard]] Source& source(std::size_t number = 0) { return sources.at(number); }
    [[nodiscard]] std::size_t numberOfSources() const { return sources.size(); }

    /// Has a timer fire once more.
    void setTimer(std::size_t number, Uptime when, std::chrono::nanoseconds leeway);

    /// Has the file of a source undergo `events`: merged into what its handler was not told yet.
    void fire(std::uintptr_t events, std::size_t number = 0);

    /// Ends what a source reports; its cancel handler goes to its queue once it is active.
    void cancel(std::size_t number);
    void activate(std::size_t number);

private:
    void addCancellation(std::size_t number);

    std::vector<Call> calls;
    Uptime time{std::chrono::hours(1)};
    std::map<std::string, std::deque<Task>> queues;
    std::deque<Source> sources;
};

} // namespace orlimo
