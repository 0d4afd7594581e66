#include "platform/files/GrowthDetector.h"
#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeEventDelivery.h"
#include "platform/files/VnodeSource.h"
#include "platform/threads/UptimeClock.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/prctl.h>

namespace orlimo {

namespace {

timespec asTimespec(Uptime::duration duration)
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
std::filesystem::path pathOf(int descriptor)
{
    std::error_code unknown;
    return std::filesystem::read_symlink(linkTo(descriptor), unknown);
}

/// Keeps signals from this thread, and from those that it starts for their whole lives, while the
/// object lives.
class PosixSignalBlocker
{
public:
    PosixSignalBlocker()
    {
        sigset_t all{};
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &previous);
    }
    PosixSignalBlocker(const PosixSignalBlocker&) = delete;
    PosixSignalBlocker& operator=(const PosixSignalBlocker&) = delete;
    ~PosixSignalBlocker() { ::pthread_sigmask(SIG_SETMASK, &previous, nullptr); }

private:
    sigset_t previous{};
};

/// Watches with inotify, on a thread of its own that sleeps until the file changes. The thread, and
/// not the event loop, looks at the file: sizes are compared the moment they change, and waiting
/// for a writer never holds the main thread up.
class InotifyVnodeSource final : public VnodeSource
{
public:
    InotifyVnodeSource(int fileDescriptor, VnodeEvents mask, Queue& queue)
        : eventMask(mask)
        , inotifyDescriptor(
              checked(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "cannot watch files"))
        , stopEvent(checked(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "cannot make an event"))
        , growth(addWatch(fileDescriptor), pathOf(fileDescriptor), currentUptime)
        , delivery(std::make_shared<VnodeEventDelivery>(queue))
    {}

    InotifyVnodeSource(const InotifyVnodeSource&) = delete;
    InotifyVnodeSource& operator=(const InotifyVnodeSource&) = delete;
    ~InotifyVnodeSource() override
    {
        stopWatching();
        delivery->disable();
    }

    void setEventHandler(Handler handler) override { delivery->eventHandler = std::move(handler); }
    void setCancelHandler(Handler handler) override
    {
        delivery->cancelHandler = std::move(handler);
    }
    [[nodiscard]] VnodeEvents data() const override { return delivery->data(); }

    void resume() override
    {
        if (watcher.joinable() || (eventMask & vnodeExtend) == 0) {
            return;
        }
        // Signals are the main thread's business.
        const PosixSignalBlocker signalBlocker;
        watcher = std::thread([this] { watch(); });
    }

    void cancel() override
    {
        if (std::exchange(cancelled, true)) {
            return;
        }
        stopWatching();
        delivery->disable();
        delivery->postCancellation();
    }

private:
    /// Sets the watch before the size is first looked at: growth between the two is then seen twice
    /// at the worst, never missed.
    int addWatch(int fileDescriptor)
    {
        if (::inotify_add_watch(
                inotifyDescriptor.get(), linkTo(fileDescriptor).c_str(), IN_MODIFY) < 0) {
            throw std::system_error(errno, std::generic_category(), "cannot watch the file");
        }
        return fileDescriptor;
    }

    void watch()
    {
        // The pauses are as long as they are meant to be, and not half as long again.
        (void)::prctl(PR_SET_TIMERSLACK, 1UL);
        do {
            // Before the file is looked at: what changes after that leaves a notification to be
            // woken by.
            drainNotifications();
            if (growth.check()) {
                delivery->post(vnodeExtend);
            }
        } while (sleep());
    }

    /// Until the file changes or until it is time to look again; false when the source is
    /// cancelled.
    bool sleep()
    {
        std::array<pollfd, 2> pollDescriptors{
            pollfd{inotifyDescriptor.get(), POLLIN, 0}, pollfd{stopEvent.get(), POLLIN, 0}};
        std::optional<timespec> limit;
        if (growth.isWaiting()) {
            limit = asTimespec(growth.pollInterval());
        }
        (void)::ppoll(
            pollDescriptors.data(), pollDescriptors.size(), limit ? &*limit : nullptr, nullptr);
        return pollDescriptors[1].revents == 0;
    }

    void drainNotifications()
    {
        alignas(inotify_event) std::array<char, 4096> events{};
        while (::read(inotifyDescriptor.get(), events.data(), events.size()) > 0) {
        }
    }

    void stopWatching()
    {
        if (watcher.joinable()) {
            (void)::eventfd_write(stopEvent.get(), 1);
            watcher.join();
        }
    }

    VnodeEvents eventMask;
    UniqueFd inotifyDescriptor;
    UniqueFd stopEvent;
    /// The watching thread's own once that runs.
    GrowthDetector growth;
    std::shared_ptr<VnodeEventDelivery> delivery;
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
