#pragma once

#include <functional>

namespace orlimo {

/// Runs work later, in another context than the caller's.
class Queue
{
public:
    using Work = std::function<void()>;

    Queue() = default;
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;
    virtual ~Queue() = default;

    /// Queues `work`, which runs once, and returns at once. Any thread. The queue owns the work
    /// until it has run. The main queue drops work that is pending when the application object is
    /// destroyed.
    virtual void async(Work work) = 0;
};

/// The queue of the application's event loop: work runs on the main thread, one piece at a time, in
/// the order of the calls. The first call must follow the construction of the application object;
/// the queue lives to the end of the process.
[[nodiscard]] Queue& mainQueue();

/// The concurrent queue of background priority. Work may run on several threads at a time; while
/// the system has no thread left, it waits for the next call. Lives to the end of the process.
[[nodiscard]] Queue& backgroundQueue();

} // namespace orlimo
