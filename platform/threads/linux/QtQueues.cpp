#include "platform/threads/EventLoopQueue.h"
#include "platform/threads/Queue.h"

#include <QCoreApplication>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

namespace {

void lowerThreadPriority()
{
    // Niceness 10 lets other programs come first without starving a decision, as the idle
    // scheduling class could. The value 0 means the calling thread.
    constexpr int backgroundNiceness = 10;
    (void)::setpriority(PRIO_PROCESS, 0, backgroundNiceness);
}

/// Runs work on two threads of low priority, so that a long piece of work, such as reading the
/// fonts, never delays a short one. The threads are started when they are needed and stay: one that
/// ended after a while would wake up an idle program to do so.
class BackgroundQueue final : public Queue
{
public:
    void async(Work work) override
    {
        {
            const std::lock_guard guard(mutex);
            pendingWork.push_back(std::move(work));
            ++unfinished;
            if (threads < std::min(unfinished, maxThreads)) {
                startThread();
            }
        }
        // Not under the mutex, on which the thread would block as it wakes.
        workAvailable.notify_one();
    }

    /// Waits until all work has run, unless there is no thread to run it.
    void waitForDone()
    {
        std::unique_lock guard(mutex);
        allDone.wait(guard, [this] { return unfinished == 0 || threads == 0; });
    }

private:
    /// With the mutex locked. If the system has no thread left, work waits for a running thread or
    /// for the one that the next call of `async` starts.
    void startThread()
    {
        try {
            std::thread([this] { runLoop(); }).detach();
            ++threads;
        } catch (const std::system_error&) {
            return;
        }
    }

    void runLoop()
    {
        lowerThreadPriority();
        std::unique_lock guard(mutex);
        for (;;) {
            workAvailable.wait(guard, [this] { return !pendingWork.empty(); });
            Work work = std::move(pendingWork.front());
            pendingWork.pop_front();
            guard.unlock();
            work();
            work = nullptr;
            guard.lock();
            if (--unfinished == 0) {
                allDone.notify_all();
            }
        }
    }

    static constexpr std::size_t maxThreads = 2;
    std::mutex mutex;
    std::condition_variable workAvailable;
    std::condition_variable allDone;
    std::deque<Work> pendingWork;
    /// How much work waits or runs.
    std::size_t unfinished = 0;
    std::size_t threads = 0;
};

// Deliberately never destroyed: threads that outlive the application object may still post work.
BackgroundQueue& backgroundPool()
{
    static BackgroundQueue* const queue = [] {
        auto* const made = new BackgroundQueue;
        qAddPostRoutine([] { backgroundPool().waitForDone(); });
        return made;
    }();
    return *queue;
}

} // namespace

Queue& mainQueue()
{
    return eventLoopQueue();
}

Queue& backgroundQueue()
{
    return backgroundPool();
}

} // namespace orlimo
