#include "platform/threads/EventLoopQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace orlimo {

namespace {

/// Work on the Qt event loop: one event for each piece of work.
class EventLoopQueue final : public QObject, public Queue
{
public:
    EventLoopQueue() { moveToThread(QCoreApplication::instance()->thread()); }

    void async(Work work) override
    {
        auto event = std::make_unique<QEvent>(QEvent::User);
        {
            const std::lock_guard guard(mutex);
            if (!open) {
                return;
            }
            pendingWork.push_back(std::move(work));
        }
        // Not under the mutex, on which the event loop's thread would block as it wakes.
        QCoreApplication::postEvent(this, event.release());
    }

    /// Drops work from now on: there is no event loop left to post to.
    void close()
    {
        const std::lock_guard guard(mutex);
        open = false;
    }

    bool event(QEvent* event) override
    {
        // Lock before the first access to the event, which another thread created: the thread
        // sanitizer does not see Qt's synchronization.
        std::unique_lock guard(mutex);
        if (event->type() != QEvent::User) {
            guard.unlock();
            return QObject::event(event);
        }
        const Work work = std::move(pendingWork.front());
        pendingWork.pop_front();
        guard.unlock();
        work();
        return true;
    }

private:
    std::mutex mutex;
    bool open = true;
    std::deque<Work> pendingWork;
};

// Deliberately never destroyed: threads that outlive the application object may still post work.
EventLoopQueue& sharedQueue()
{
    static EventLoopQueue* const queue = [] {
        auto* const made = new EventLoopQueue;
        qAddPostRoutine([] { sharedQueue().close(); });
        return made;
    }();
    return *queue;
}

} // namespace

Queue& eventLoopQueue()
{
    return sharedQueue();
}

} // namespace orlimo
