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
    // Ten steps of niceness: other programs come first, but a decision is never starved, as it
    // could be under the idle scheduling class. The value 0 stands for the calling thread.
    constexpr int backgroundNiceness = 10;
    (void)::setpriority(PRIO_PROCESS, 0, backgroundNiceness);
}

/// Work on threads of low priority, as many as there are processors. The threads are started when
/// they are needed and stay: one that ended after a while would wake an idle program up to do so.
class BackgroundQueue final : public Queue
{
public:
    void async(Work work) override
    {
        {
            const std::lock_guard guard(mutex);
            pendingWork.push_back(std::move(work));
            if (idleThreads < pendingWork.size() && threads < maxThreads) {
                startThread();
            }
        }
        // Not under the mutex, for which the thread that wakes would fall asleep again.
        workAvailable.notify_one();
    }

    /// Waits until everything that was offered has run, as far as there is a thread to run it.
    void waitForDone()
    {
        std::unique_lock guard(mutex);
        allDone.wait(
            guard, [this] { return busyThreads == 0 && (pendingWork.empty() || threads == 0); });
    }

private:
    /// Where the host has no thread left, what waits is run by those that there are, or by the one
    /// that is started for the next offer. With the mutex locked.
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
            ++idleThreads;
            workAvailable.wait(guard, [this] { return !pendingWork.empty(); });
            --idleThreads;
            runNext(guard);
        }
    }

    void runNext(std::unique_lock<std::mutex>& guard)
    {
        ++busyThreads;
        Work work = std::move(pendingWork.front());
        pendingWork.pop_front();
        guard.unlock();
        work();
        work = nullptr;
        guard.lock();
        --busyThreads;
        if (pendingWork.empty() && busyThreads == 0) {
            allDone.notify_all();
        }
    }

    const std::size_t maxThreads = std::max(2U, std::thread::hardware_concurrency());
    std::mutex mutex;
    std::condition_variable workAvailable;
    std::condition_variable allDone;
    std::deque<Work> pendingWork;
    std::size_t threads = 0;
    std::size_t idleThreads = 0;
    std::size_t busyThreads = 0;
};

// Deliberately never destroyed: threads that outlive the application object may still offer work.
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
