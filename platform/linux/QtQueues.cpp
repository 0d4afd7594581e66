#include "platform/Queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

namespace {

/// Work on the Qt event loop: one event for each piece of work.
class EventLoopQueue final : public QObject, public Queue
{
public:
    EventLoopQueue() { moveToThread(QCoreApplication::instance()->thread()); }

    void async(Work work) override
    {
        const std::lock_guard guard(mutex);
        if (open) {
            list.push_back(std::move(work));
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        }
    }

    /// From here on work is dropped: there is no event loop any more to post to.
    void close()
    {
        const std::lock_guard guard(mutex);
        open = false;
    }

    bool event(QEvent* event) override
    {
        // The mutex comes before the first look at the event, which was made by another thread:
        // Qt's own hand-over of it is not visible to the thread sanitizer.
        std::unique_lock guard(mutex);
        if (event->type() != QEvent::User) {
            guard.unlock();
            return QObject::event(event);
        }
        const Work work = std::move(list.front());
        list.pop_front();
        guard.unlock();
        work();
        return true;
    }

private:
    std::mutex mutex;
    bool open = true;
    std::deque<Work> list;
};

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
        const std::lock_guard guard(mutex);
        list.push_back(std::move(work));
        if (idle < list.size() && threads < mostThreads) {
            ++threads;
            std::thread([this] { runForEver(); }).detach();
        }
        changed.notify_one();
    }

    /// Waits until everything that was offered has run.
    void waitForDone()
    {
        std::unique_lock guard(mutex);
        done.wait(guard, [this] { return list.empty() && busy == 0; });
    }

private:
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

// Both queues are deliberately never destroyed: threads that outlive the application object may
// still offer work.

EventLoopQueue& eventLoopQueue()
{
    static EventLoopQueue* const queue = [] {
        auto* const made = new EventLoopQueue;
        qAddPostRoutine([] { eventLoopQueue().close(); });
        return made;
    }();
    return *queue;
}

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
