#include "platform/Queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>
#include <QThreadPool>

#include <deque>
#include <mutex>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

namespace {

/// Work in the order in which it was offered.
class WorkList
{
public:
    void append(Queue::Work work)
    {
        const std::lock_guard guard(mutex);
        list.push_back(std::move(work));
    }

    Queue::Work takeFirst()
    {
        const std::lock_guard guard(mutex);
        Queue::Work first = std::move(list.front());
        list.pop_front();
        return first;
    }

private:
    std::mutex mutex;
    std::deque<Queue::Work> list;
};

/// Work on the Qt event loop: one event for each piece of work.
class EventLoopQueue final : public QObject, public Queue
{
public:
    EventLoopQueue() { moveToThread(QCoreApplication::instance()->thread()); }

    void async(Work work) override
    {
        const std::lock_guard guard(mutex);
        if (open) {
            work_.append(std::move(work));
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
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        work_.takeFirst()();
        return true;
    }

private:
    std::mutex mutex;
    bool open = true;
    WorkList work_;
};

void lowerThreadPriority()
{
    // Ten steps of niceness: other programs come first, but a decision is never starved, as it
    // could be under the idle scheduling class. The value 0 stands for the calling thread.
    constexpr int backgroundNiceness = 10;
    (void)::setpriority(PRIO_PROCESS, 0, backgroundNiceness);
}

/// Work on a pool of threads of low priority. The threads stay once they were needed: one that
/// ended after a while would wake an idle program up to do so.
class BackgroundQueue final : public Queue
{
public:
    BackgroundQueue() { pool.setExpiryTimeout(-1); }

    void async(Work work) override
    {
        work_.append(std::move(work));
        pool.start([this] {
            thread_local const bool lowered = (lowerThreadPriority(), true);
            (void)lowered;
            work_.takeFirst()();
        });
    }

    void waitForDone() { pool.waitForDone(); }

private:
    WorkList work_;
    QThreadPool pool;
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
