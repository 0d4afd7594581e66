#pragma once

#include <functional>
#include <memory>

namespace orlimo {

/// The claim of this process to be the program's only instance in the user's session, held for the
/// lifetime of the object. Requests of later instances reach the one that holds it. Main thread;
/// needs no QApplication, so that a second instance works without a display.
class ApplicationInstance
{
public:
    enum class Claim {
        /// No other instance runs. Later ones find this one.
        first,
        /// Other instances cannot be found here: they run side by side.
        unmanaged,
        /// Another instance runs. It opens its window, unless this launch belongs to a login.
        activatedOther,
        /// Another instance runs and did not reply in time.
        otherUnresponsive,
    };

    ApplicationInstance() = default;
    ApplicationInstance(const ApplicationInstance&) = delete;
    ApplicationInstance& operator=(const ApplicationInstance&) = delete;
    virtual ~ApplicationInstance() = default;

    [[nodiscard]] virtual Claim claim() const = 0;

    /// Calls `open` on the main thread, in the event loop, when another instance or the desktop
    /// requests it, once for simultaneous requests. Set once, when launching has finished. Earlier
    /// requests, to quit among them, are served within the call.
    virtual void onActivation(std::function<void()> open) = 0;

    /// Makes the claim. Returns within two seconds, even if another instance does not respond; at
    /// login, where nobody waits, within eleven in a slow session.
    [[nodiscard]] static std::unique_ptr<ApplicationInstance> create(bool launchedAtLogin);
};

} // namespace orlimo
