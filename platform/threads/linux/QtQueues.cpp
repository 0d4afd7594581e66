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
            list.push_back(std::move(work));
            if (idle < list.size() && threads < mostThreads) {
                startThread();
            }
        }
        // Not under the mutex, for which the thread that wakes would fall asleep again.
        changed.notify_one();
    }

    /// Waits until everything that was offered has run, as far as there is a thread to run it.
    void waitForDone()
    {
        std::unique_lock guard(mutex);
        done.wait(guard, [this] { return busy == 0 && (list.empty() || threads == 0); });
    }

private:
    /// Where the host has no thread left, what waits is run by those that there are, or by the one
    /// that is started for the next offer. With the mutex locked.
    void startThread()
    {
        try {
            std::thread([this] { runForEver(); }).detach();
            ++threads;
        } catch (const std::system_error&) {
            return;
        }
    }

    void runForEver()
    {
        lowerThreadPriority();
        std::unique_lock guard(mutex);
        for (;;) {
            ++idle;
            changed.wait(guard, [this] { return !list.empty(); });
            --idle;
            runFirst(guard);
        }
    }

    void runFirst(std::unique_lock<std::mutex>& guard)
    {
        ++busy;
        Work work = std::move(list.front());
        list.pop_front();
        guard.unlock();
        work();
        work = nullptr;
        guard.lock();
        --busy;
        if (list.empty() && busy == 0) {
            done.notify_all();
        }
    }

    const std::size_t mostThreads = std::max(2U, std::thread::hardware_concurrency());
    std::mutex mutex;
    std::condition_variable changed;
    std::condition_variable done;
    std::deque<Work> list;
    std::size_t threads = 0;
    std::size_t idle = 0;
    std::size_t busy = 0;
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
