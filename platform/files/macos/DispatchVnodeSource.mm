#include "platform/files/macos/DispatchVnodeSource.h"

#include "platform/files/GrowthDetector.h"
#include "platform/files/VnodeEventDelivery.h"
#include "platform/files/macos/FileChangeDetector.h"
#include "platform/process/FatalStop.h"
#include "platform/threads/macos/DispatchObject.h"
#include "platform/threads/macos/MainDispatchQueue.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <optional>
#include <system_error>
#include <utility>

#import <dispatch/dispatch.h>
#include <fcntl.h>
#include <sys/param.h>
#include <sys/stat.h>

namespace orlimo {

namespace {

static_assert(vnodeExtend == DISPATCH_VNODE_EXTEND);

/// Throws the system's error for a closed descriptor: the dispatch library would report nothing.
int checked(int descriptor)
{
    struct stat status
    {};
    if (::fstat(descriptor, &status) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot watch the file");
    }
    return descriptor;
}

/// The name of an open file; empty when it is unknown.
std::filesystem::path pathOf(int descriptor)
{
    std::array<char, MAXPATHLEN> name{};
    return ::fcntl(descriptor, F_GETPATH, name.data()) == 0 ? std::filesystem::path(name.data())
                                                            : std::filesystem::path();
}

/// Runs work at once on the calling thread.
class InlineQueue final : public Queue
{
public:
    void async(Work work) override { work(); }
};

Queue& inlineQueue()
{
    static InlineQueue queue;
    return queue;
}

/// What a source does on its dispatch queue. Shared with the blocks there, which may outlive the
/// source. All on that queue.
class Watch : public std::enable_shared_from_this<Watch>
{
public:
    Watch(
        int fileDescriptor,
        DispatchObject<dispatch_queue_t> dispatchQueue,
        Queue& handlerQueue,
        const UptimeClock& uptimeClock)
        : queue(std::move(dispatchQueue))
        , changeDetector(fileDescriptor)
        , growth(fileDescriptor, pathOf(fileDescriptor), uptimeClock)
        , delivery(std::make_shared<VnodeEventDelivery>(handlerQueue))
    {}

    /// The system has reported `events`.
    void handleEvents(VnodeEvents events)
    {
        if (ended) {
            return;
        }
        if (const VnodeEvents others = events & ~vnodeExtend; others != 0) {
            delivery->post(others);
        }
        if ((events & vnodeExtend) != 0) {
            handleExtend();
        }
    }

    /// Ends the checks.
    void end()
    {
        ended = true;
        if (timer) {
            dispatch_source_cancel(timer->get());
            timer.reset();
        }
    }

    /// What to run when the system has released the file, which may then be closed. Set before the
    /// source is cancelled.
    void setReleaseHandler(std::function<void()> handler) { releaseHandler = std::move(handler); }

    /// The system has released the file.
    void release()
    {
        end();
        releaseHandler();
    }

    [[nodiscard]] const std::shared_ptr<VnodeEventDelivery>& handlers() const { return delivery; }
    [[nodiscard]] dispatch_queue_t dispatchQueue() const { return queue.get(); }

private:
    void handleExtend()
    {
        // The system reports growth, which the size need not show: the file may have been truncated
        // since. An unchanged file, however, was reported with the previous check: the system
        // reports a commit's last frames again long after their delivery.
        if (changeDetector.hasChanged()) {
            check(true);
        } else if (growth.isWaiting()) {
            check(false);
        }
    }

    void check(bool hasGrown)
    {
        if (growth.check(hasGrown)) {
            delivery->post(vnodeExtend);
        }
        if (growth.isWaiting() && !isCheckScheduled && !ended) {
            scheduleCheck();
        }
    }

    /// The thread continues with other work; nothing blocks on the writer.
    void scheduleCheck()
    {
        isCheckScheduled = true;
        if (!timer) {
            timer = makeTimer();
        }
        const std::chrono::nanoseconds pollInterval = growth.pollInterval();
        dispatch_source_set_timer(
            timer->get(),
            dispatch_time(DISPATCH_TIME_NOW, pollInterval.count()),
            DISPATCH_TIME_FOREVER,
            0);
    }

    /// A strict timer: the system may postpone others, dispatch_after() included, and does so at
    /// length for a program without a window.
    [[nodiscard]] DispatchObject<dispatch_source_t> makeTimer()
    {
        dispatch_source_t const made = dispatch_source_create(
            DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT, queue.get());
        if (made == nullptr) {
            fatalStop("the system makes no timer");
        }
        const std::weak_ptr<Watch> watch = weak_from_this();
        dispatch_source_set_event_handler(made, ^{
            if (const auto self = watch.lock()) {
                self->checkAgain();
            }
        });
        dispatch_activate(made);
        return DispatchObject<dispatch_source_t>::adopt(made);
    }

    void checkAgain()
    {
        isCheckScheduled = false;
        if (!ended && growth.isWaiting()) {
            // Before the check: a later change is checked when the system reports it.
            (void)changeDetector.hasChanged();
            check(false);
        }
    }

    DispatchObject<dispatch_queue_t> queue;
    FileChangeDetector changeDetector;
    GrowthDetector growth;
    std::shared_ptr<VnodeEventDelivery> delivery;
    std::function<void()> releaseHandler;
    /// Created when growth waits for the first time.
    std::optional<DispatchObject<dispatch_source_t>> timer;
    bool isCheckScheduled = false;
    bool ended = false;
};

/// Watches with a source of the dispatch library. Where the main dispatch queue runs on the main
/// thread and handlers belong there, the source is on that queue and runs them itself; otherwise it
/// is on a queue of its own and hands them over.
class DispatchVnodeSource final : public VnodeSource
{
public:
    DispatchVnodeSource(
        int fileDescriptor, VnodeEvents mask, Queue& queue, const UptimeClock& clock)
        : isOnMainQueue(&queue == &mainQueue() && isMainDispatchQueueDrained())
        , watch(std::make_shared<Watch>(
              checked(fileDescriptor),
              isOnMainQueue ? DispatchObject<dispatch_queue_t>::retain(dispatch_get_main_queue())
                            : DispatchObject<dispatch_queue_t>::adopt(
                                  dispatch_queue_create("vnode source", DISPATCH_QUEUE_SERIAL)),
              isOnMainQueue ? inlineQueue() : queue,
              clock))
        , source(makeSource(fileDescriptor, mask))
    {
        // The source drops its handlers, and with them what they hold, when it has been cancelled.
        const auto retainedWatch = watch;
        dispatch_source_t const dispatchSource = source.get();
        dispatch_source_set_event_handler(dispatchSource, ^{
            retainedWatch->handleEvents(
                static_cast<VnodeEvents>(dispatch_source_get_data(dispatchSource)));
        });
        dispatch_source_set_cancel_handler(dispatchSource, ^{
            retainedWatch->release();
        });
    }

    DispatchVnodeSource(const DispatchVnodeSource&) = delete;
    DispatchVnodeSource& operator=(const DispatchVnodeSource&) = delete;
    ~DispatchVnodeSource() override
    {
        if (!cancelled) {
            release([] {});
        }
    }

    void setEventHandler(Handler handler) override
    {
        watch->handlers()->eventHandler = std::move(handler);
    }
    void setCancelHandler(Handler handler) override
    {
        watch->handlers()->cancelHandler = std::move(handler);
    }
    [[nodiscard]] VnodeEvents data() const override { return watch->handlers()->data(); }

    void resume() override { dispatch_activate(source.get()); }

    void cancel() override
    {
        if (!std::exchange(cancelled, true)) {
            release([handlers = watch->handlers()] { handlers->postCancellation(); });
        }
    }

private:
    DispatchObject<dispatch_source_t> makeSource(int fileDescriptor, VnodeEvents mask) const
    {
        const auto handle = static_cast<uintptr_t>(fileDescriptor);
        dispatch_source_t const made = dispatch_source_create(
            DISPATCH_SOURCE_TYPE_VNODE, handle, mask, watch->dispatchQueue());
        if (made == nullptr) {
            throw std::system_error(EINVAL, std::generic_category(), "cannot watch the file");
        }
        return DispatchObject<dispatch_source_t>::adopt(made);
    }

    /// Ends the watch; runs `completion` when the system has released the file.
    void release(const std::function<void()>& completion)
    {
        if (isOnMainQueue) {
            watch->end();
            watch->handlers()->disable();
            cancelSource(completion);
            return;
        }
        // Nothing blocks on the source's own queue.
        const auto released = std::make_shared<std::promise<void>>();
        cancelSource([released] { released->set_value(); });
        released->get_future().wait();
        watch->handlers()->disable();
        completion();
    }

    void cancelSource(std::function<void()> onRelease)
    {
        watch->setReleaseHandler(std::move(onRelease));
        dispatch_source_cancel(source.get());
        // An inactive source neither runs its cancel handler nor may be released.
        dispatch_activate(source.get());
    }

    bool isOnMainQueue;
    std::shared_ptr<Watch> watch;
    DispatchObject<dispatch_source_t> source;
    bool cancelled = false;
};

} // namespace

std::unique_ptr<VnodeSource> makeDispatchVnodeSource(
    int fileDescriptor, VnodeEvents mask, Queue& queue, const UptimeClock& clock)
{
    return std::make_unique<DispatchVnodeSource>(fileDescriptor, mask, queue, clock);
}

std::unique_ptr<VnodeSource>
makeFileSystemObjectSource(int fileDescriptor, VnodeEvents mask, Queue& queue)
{
    return makeDispatchVnodeSource(fileDescriptor, mask, queue, currentUptime);
}

} // namespace orlimo
