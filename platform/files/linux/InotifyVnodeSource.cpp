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

/// A path to the file behind an open descriptor, whatever its current name.
std::filesystem::path linkTo(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// The file's name; empty when it is unknown.
std::filesystem::path pathOf(int descriptor)
{
    std::error_code unknown;
    return std::filesystem::read_symlink(linkTo(descriptor), unknown);
}

/// Blocks all signals in this thread, and in the threads that it starts, while the object lives.
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

/// Watches with inotify, on a thread of its own that sleeps until the file changes. That thread
/// examines the file, so that sizes are compared as soon as they change and waiting for a writer
/// never blocks the main thread.
class InotifyVnodeSource final : public VnodeSource
{
public:
    InotifyVnodeSource(int fileDescriptor, VnodeEvents mask, Queue& queue)
        : eventMask(mask)
        , inotifyDescriptor(
              checked(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "cannot watch files"))
        , stopEvent(checked(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "cannot create an event"))
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
        // Only the main thread handles signals.
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
    /// Sets the watch before the size is first read: growth between the two is then seen twice at
    /// worst, never missed.
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
        // The default slack of 50 us would lengthen the shortest poll interval by half.
        (void)::prctl(PR_SET_TIMERSLACK, 1UL);
        do {
            // Before the file is checked: a later change leaves a notification that ends the sleep.
            drainNotifications();
            if (growth.check()) {
                delivery->post(vnodeExtend);
            }
        } while (sleep());
    }

    /// Sleeps until the file changes or the next check is due; false when the source is cancelled.
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
    /// Used by the watching thread alone once that runs.
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
