#include "platform/threads/EventLoopQueue.h"
#include "platform/threads/Queue.h"
#include "platform/threads/macos/MainDispatchQueue.h"

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <utility>

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>

namespace orlimo {

namespace {

/// Submits `work` to the dispatch queue, where `run` takes ownership.
void submit(dispatch_queue_t queue, Queue::Work work, dispatch_function_t run)
{
    dispatch_async_f(queue, std::make_unique<Queue::Work>(std::move(work)).release(), run);
}

std::unique_ptr<Queue::Work> takeWork(void* context)
{
    return std::unique_ptr<Queue::Work>(static_cast<Queue::Work*>(context));
}

/// The dispatch library's queue of the main thread.
class MainDispatchQueue final : public Queue
{
public:
    void async(Work work) override
    {
        if (isOpen()) {
            submit(dispatch_get_main_queue(), std::move(work), run);
        }
    }

    /// Drops later and pending work.
    static void close() { isOpen() = false; }

private:
    static void run(void* context)
    {
        const auto work = takeWork(context);
        if (isOpen()) {
            (*work)();
        }
    }

    static std::atomic<bool>& isOpen()
    {
        static std::atomic<bool> open = true;
        return open;
    }
};

/// The dispatch library's concurrent queue of background quality.
class BackgroundDispatchQueue final : public Queue
{
public:
    void async(Work work) override
    {
        submit(dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0), std::move(work), run);
    }

private:
    static void run(void* context)
    {
        @autoreleasepool {
            (*takeWork(context))();
        }
    }
};

Queue& mainDispatchQueue()
{
    static Queue* const queue = [] {
        qAddPostRoutine(MainDispatchQueue::close);
        return new MainDispatchQueue;
    }();
    return *queue;
}

} // namespace

// No queue is ever destroyed: threads that outlive the application object may still post work.

Queue& mainQueue()
{
    static Queue& queue = isMainDispatchQueueDrained() ? mainDispatchQueue() : eventLoopQueue();
    return queue;
}

Queue& backgroundQueue()
{
    static Queue* const queue = new BackgroundDispatchQueue;
    return *queue;
}

} // namespace orlimo
