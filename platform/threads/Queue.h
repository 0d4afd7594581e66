#pragma once

#include <functional>

namespace orlimo {

/// A place where work is run later, in another context than the one that offers it.
class Queue
{
public:
    using Work = std::function<void()>;

    Queue() = default;
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;
    virtual ~Queue() = default;

    /// Takes `work`, returns at once and runs it once, later. May be called on any thread. The
    /// queue owns the work until it has run; work that is still waiting when the event loop is
    /// taken down is not run any more.
    virtual void async(Work work) = 0;
};

/// The queue of the application's event loop: work runs on the main thread, one piece at a time, in
/// the order in which it was offered. The first call must come after the application object was
/// built; the queue itself lives to the end of the process.
[[nodiscard]] Queue& mainQueue();

/// The host's concurrent queue of background priority. Work may run on several threads at a time;
/// where the host has no thread left, it waits for the next offer. Lives to the end of the process.
[[nodiscard]] Queue& backgroundQueue();

} // namespace orlimo
