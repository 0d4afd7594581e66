#include "platform/VnodeSource.h"
#include "platform/posix/GrowthMeter.h"
#include "platform/posix/StoreWriteLock.h"
#include "platform/posix/UniqueFd.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>

namespace orlimo {

namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

/// How long a writer that does not finish may hold an event up.
constexpr steady_clock::duration longestWait = 1s;

/// How long to wait before the writer's lock is asked for again: an eighth of what it has taken so
/// far, so that the delay stays in proportion to the commit and a long commit costs few wake-ups.
steady_clock::duration pauseAfter(steady_clock::duration waited)
{
    return std::clamp<steady_clock::duration>(waited / 8, 100us, 5ms);
}

timespec asTimespec(steady_clock::duration duration)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(duration - seconds);
    return {static_cast<std::time_t>(seconds.count()), static_cast<long>(rest.count())};
}

UniqueFd checked(int descriptor, const char* what)
{
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return UniqueFd(descriptor);
}

/// The link that leads to the file behind an open descriptor, whatever its name has become.
std::filesystem::path linkTo(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// The name under which the file was opened; empty when the host does not tell.
std::filesystem::path nameOf(int descriptor)
{
    std::error_code unknown;
    return std::filesystem::read_symlink(linkTo(descriptor), unknown);
}

/// Hands events over to the queue. Shared with the work that waits there, which may outlive the
/// source.
class Delivery : public std::enable_shared_from_this<Delivery>
{
public:
    explicit Delivery(Queue& queueOfHandlers)
        : queue(queueOfHandlers)
    {}

    /// Asks for one run of the event handler; what is asked before it runs is the same run. Any
    /// thread.
    void post()
    {
        if (!waiting.exchange(true)) {
            queue.async([self = shared_from_this()] { self->fire(); });
        }
    }

    /// Asks for the cancel handler; no event handler starts any more. Queue's thread.
    void postCancellation()
    {
        cancelled = true;
        queue.async([self = shared_from_this()] {
            const auto runLast = std::exchange(self->cancelHandler, {});
            const auto dropped = std::exchange(self->eventHandler, {});
            if (runLast) {
                runLast();
            }
        });
    }

    /// Delivers no event any more: there is no source to speak for. Queue's thread.
    void drop() { cancelled = true; }

    VnodeSource::Handler eventHandler;
    VnodeSource::Handler cancelHandler;
    VnodeEvents data = 0;

private:
    void fire()
    {
        waiting = false;
        if (cancelled || !eventHandler) {
            return;
        }
        data = vnodeExtend;
        const auto running = eventHandler;
        running();
        data = 0;
    }

    Queue& queue;
    std::atomic<bool> waiting = false;
    bool cancelled = false;
};

/// Watches with inotify, on a thread of its own that sleeps until the file changes. The thread, and
/// not the event loop, looks at the file: sizes are compared the moment they change, and waiting
/// for a writer never holds the main thread up.
class InotifyVnodeSource final : public VnodeSource
{
public:
    InotifyVnodeSource(int fileDescriptor, VnodeEvents mask, Queue& queue)
        : reported(mask)
        , notifications(checked(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "cannot watch files"))
        , stop(checked(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "cannot make an event"))
        , meter(watched(fileDescriptor))
        , writeLock(nameOf(fileDescriptor))
        , delivery(std::make_shared<Delivery>(queue))
    {}

    InotifyVnodeSource(const InotifyVnodeSource&) = delete;
    InotifyVnodeSource& operator=(const InotifyVnodeSource&) = delete;
    ~InotifyVnodeSource() override
    {
        stopWatching();
        delivery->drop();
    }

    void setEventHandler(Handler handler) override { delivery->eventHandler = std::move(handler); }
    void setCancelHandler(Handler handler) override
    {
        delivery->cancelHandler = std::move(handler);
    }
    [[nodiscard]] VnodeEvents data() const override { return delivery->data; }

    void resume() override
    {
        if (watcher.joinable() || (reported & vnodeExtend) == 0) {
            return;
        }
        // Signals are the main thread's business.
        sigset_t all{};
        sigset_t previous{};
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &previous);
        watcher = std::thread([this] { watch(); });
        ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }

    void cancel() override
    {
        if (std::exchange(cancelled, true)) {
            return;
        }
        stopWatching();
        delivery->postCancellation();
    }

private:
    /// Sets the watch before the size is first looked at: growth between the two is then seen twice
    /// at the worst, never missed.
    int watched(int fileDescriptor)
    {
        if (::inotify_add_watch(notifications.get(), linkTo(fileDescriptor).c_str(), IN_MODIFY) < 0)
        {
            throw std::system_error(errno, std::generic_category(), "cannot watch the file");
        }
        return fileDescriptor;
    }

    void watch()
    {
        while (sleep()) {
            const auto now = steady_clock::now();
            if (hasGrown() && !growthSince) {
                growthSince = now;
            }
            if (growthSince) {
                settle(now);
            }
        }
    }

    /// Until the file changes, until it is time to ask for the writer's lock again, or, with the
    /// answer false, until the source is cancelled.
    bool sleep()
    {
        std::array<pollfd, 2> awaited{
            pollfd{notifications.get(), POLLIN, 0}, pollfd{stop.get(), POLLIN, 0}};
        std::optional<timespec> limit;
        if (growthSince) {
            limit = asTimespec(pauseAfter(steady_clock::now() - *growthSince));
        }
        (void)::ppoll(awaited.data(), awaited.size(), limit ? &*limit : nullptr, nullptr);
        return awaited[1].revents == 0;
    }

    /// Takes the notifications and compares the sizes. The order matters: what grows after the
    /// sizes are compared leaves a notification to be woken by.
    bool hasGrown()
    {
        alignas(inotify_event) std::array<char, 4096> events{};
        while (::read(notifications.get(), events.data(), events.size()) > 0) {
        }
        return meter.hasGrown();
    }

    /// Delivers the growth when the commit that it belongs to can be read.
    void settle(steady_clock::time_point now)
    {
        const bool expired = now - *growthSince >= longestWait;
        if (!expired && writeLock.isHeldElsewhere()) {
            return;
        }
        // The last of the commit's frames may have come between the look at the size and the look
        // at the lock. They belong to this event, unless the next commit is already under way.
        const bool nextMayHaveBegun = hasGrown() && writeLock.isHeldElsewhere();
        delivery->post();
        growthSince = nextMayHaveBegun ? std::optional(steady_clock::now()) : std::nullopt;
    }

    void stopWatching()
    {
        if (watcher.joinable()) {
            (void)::eventfd_write(stop.get(), 1);
            watcher.join();
        }
    }

    VnodeEvents reported;
    UniqueFd notifications;
    UniqueFd stop;
    GrowthMeter meter;
    StoreWriteLock writeLock;
    std::shared_ptr<Delivery> delivery;
    /// Since when growth waits to be delivered. The watcher's own, as are the meter and the lock.
    std::optional<steady_clock::time_point> growthSince;
    bool cancelled = false;
    std::thread watcher;
};

} // namespace

std::unique_ptr<VnodeSource>
makeFileSystemObjectSource(int fileDescriptor, VnodeEvents mask, Queue& queue)
{
    return std::make_unique<InotifyVnodeSource>(fileDescriptor, mask, queue);
}

} // namespace orlimo
