#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace orlimo {

/// What the system knows of running applications, this one among them, and what opening one does.
/// Main thread, but for `Completion`.
struct RunningApplicationsScript
{
    struct Application
    {
        std::optional<std::string> bundlePath;
        bool isTerminated = false;
    };

    /// A request to open a bundle, and how it is to be done.
    struct Opening
    {
        std::string bundlePath;
        bool createsNewInstance = false;
        bool promptsUser = true;

        bool operator==(const Opening&) const = default;
    };

    /// Tells whoever asked: the process that was opened, or none for an error. Any thread.
    using Completion = std::function<void(std::optional<pid_t> opened)>;

    /// Of the bundle of this process; none outside a bundle.
    std::optional<std::string> ownBundleIdentifier;
    /// The application in a process, where the system knows one.
    std::function<std::optional<Application>(pid_t)> applicationIn;
    std::function<void(const Opening&, const Completion&)> open;
};

/// The one that is asked. A test gives it back as it found it.
[[nodiscard]] RunningApplicationsScript& runningApplicationsScript();

} // namespace orlimo
