#include "platform/ApplicationIdentity.h"
#include "platform/instance/ApplicationInstance.h"
#include "platform/instance/macos/ProcessLock.h"
#include "platform/instance/macos/ReopenEvents.h"
#include "platform/threads/MainThread.h"
#include "platform/threads/UptimeClock.h"

#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <filesystem>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <unistd.h>

namespace orlimo {

namespace {

using Claim = ApplicationInstance::Claim;

/// How long the system and the program that runs already may take until the claim is settled. With
/// what a start needs besides, less than two seconds.
constexpr std::chrono::milliseconds claimTimeout{1500};

/// Between two looks at a program that the system does not know yet, or no longer.
constexpr std::chrono::milliseconds pollInterval{20};

/// The file whose lock is the claim. It lies in the user's own part of the system's folder for
/// caches: unlike the one for temporary files, that is not cleared of what nobody has read for
/// days.
std::optional<std::filesystem::path> lockFilePath()
{
    std::array<char, PATH_MAX> folder{};
    const std::size_t length = ::confstr(_CS_DARWIN_USER_CACHE_DIR, folder.data(), folder.size());
    if (length == 0 || length > folder.size()) {
        return std::nullopt;
    }
    return std::filesystem::path(folder.data()) /
           (std::string(identity::applicationIdentifier) + ".instance");
}

/// Where the program is one of a bundle's, which alone the system can be asked to show. A bare
/// executable runs beside others.
bool belongsToBundle()
{
    return [[NSBundle mainBundle] bundleIdentifier] != nil;
}

/// Opens the program that `other` runs, as a double click would: the system sends it the reopen
/// event. False when that fails or is not done by the deadline.
bool reopen(NSRunningApplication* other, Uptime deadline)
{
    NSWorkspaceOpenConfiguration* const configuration =
        [NSWorkspaceOpenConfiguration configuration];
    [configuration setCreatesNewApplicationInstance:NO];
    [configuration setPromptsUserIfNeeded:NO];
    // Shared with the handler, which may come on another thread when nobody waits any more.
    const auto result = std::make_shared<std::promise<bool>>();
    std::future<bool> isOpened = result->get_future();
    [[NSWorkspace sharedWorkspace]
        openApplicationAtURL:[other bundleURL]
               configuration:configuration
           completionHandler:^(NSRunningApplication* opened, NSError* error) {
               @autoreleasepool {
                   // Where the system means this start, the other one was not asked.
                   result->set_value(error == nil && [opened processIdentifier] != ::getpid());
               }
           }];
    const auto timeLeft = std::max(deadline - currentUptime(), Uptime::duration::zero());
    return isOpened.wait_for(timeLeft) == std::future_status::ready && isOpened.get();
}

/// Asks the program in the process `other` to open its window. False when it does not, because it
/// is not known to the system: it may be that early in its start, or ending.
bool activate(pid_t other, Uptime deadline)
{
    @autoreleasepool {
        NSRunningApplication* const application =
            [NSRunningApplication runningApplicationWithProcessIdentifier:other];
        return application != nil && ![application isTerminated] &&
               [application bundleURL] != nil && reopen(application, deadline);
    }
}

Claim claimBy(ProcessLock& lock, bool launchedAtLogin)
{
    const Uptime deadline = currentUptime() + claimTimeout;
    for (;;) {
        switch (lock.take()) {
        case ProcessLock::Outcome::taken:
            return Claim::first;
        case ProcessLock::Outcome::unavailable:
            return Claim::unmanaged;
        case ProcessLock::Outcome::heldByAnother:
            break;
        }
        if (launchedAtLogin) {
            return Claim::activatedOther;
        }
        if (currentUptime() >= deadline) {
            return Claim::otherUnresponsive;
        }
        const auto other = lock.holder();
        if (other && activate(*other, deadline)) {
            return Claim::activatedOther;
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

/// The claim as a lock that ends with the process. The system itself opens a bundle once only; what
/// is found here is an executable that was started by hand, or a copy that was asked for.
class RunningInstance final : public ApplicationInstance
{
public:
    explicit RunningInstance(bool launchedAtLogin)
    {
        requireMainThread();
        flushTimer.setSingleShot(true);
        QObject::connect(&flushTimer, &QTimer::timeout, [this] { flushPendingRequests(); });
        ownClaim = claimBundle(launchedAtLogin);
        if (ownClaim == Claim::first || ownClaim == Claim::unmanaged) {
            reopenEvents.emplace([this] { enqueueRequest(); });
        }
    }

    [[nodiscard]] Claim claim() const override { return ownClaim; }

    void onActivation(std::function<void()> open) override
    {
        requireMainThread();
        activationHandler = std::move(open);
        if (reopenEvents) {
            reopenEvents->install();
        }
        flushPendingRequests();
    }

private:
    Claim claimBundle(bool launchedAtLogin)
    {
        @autoreleasepool {
            const auto file = belongsToBundle() ? lockFilePath() : std::nullopt;
            return file ? claimBy(lock.emplace(*file), launchedAtLogin) : Claim::unmanaged;
        }
    }

    void enqueueRequest()
    {
        hasPendingRequest = true;
        // Not within the event: whoever sent it may wait for its end, and opening takes its time.
        flushTimer.start(0);
    }

    void flushPendingRequests()
    {
        if (activationHandler && std::exchange(hasPendingRequest, false)) {
            activationHandler();
        }
    }

    std::optional<ProcessLock> lock;
    Claim ownClaim = Claim::unmanaged;
    std::function<void()> activationHandler;
    bool hasPendingRequest = false;
    QTimer flushTimer;
    std::optional<ReopenEvents> reopenEvents;
};

} // namespace

std::unique_ptr<ApplicationInstance> ApplicationInstance::create(bool launchedAtLogin)
{
    return std::make_unique<RunningInstance>(launchedAtLogin);
}

} // namespace orlimo
