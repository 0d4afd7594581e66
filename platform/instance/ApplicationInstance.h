#pragma once

#include <functional>
#include <memory>

namespace orlimo {

/// The running program's claim to be the only one in the user's session: made with the object,
/// given up with it. What a later start asks for reaches the one that holds the claim. Main thread;
/// needs no application object of the toolkit, so that a start that is one too many needs no
/// display.
class ApplicationInstance
{
public:
    enum class Claim {
        /// No other one runs. From now on later starts find this one.
        first,
        /// The host has no means to find others: they run side by side.
        unmanaged,
        /// Another one runs. It opens its window, unless this start belongs to a login.
        activatedOther,
        /// Another one runs, and it did not answer in time.
        otherUnresponsive,
    };

    ApplicationInstance() = default;
    ApplicationInstance(const ApplicationInstance&) = delete;
    ApplicationInstance& operator=(const ApplicationInstance&) = delete;
    virtual ~ApplicationInstance() = default;

    [[nodiscard]] virtual Claim claim() const = 0;

    /// Has `open` called on the main thread, in the event loop, when the program is asked to show
    /// itself, once for what is asked at the same time; called once launching has finished. What
    /// was asked before is done within the call. It may also have been to quit.
    virtual void onActivation(std::function<void()> open) = 0;

    /// Makes the claim. Returns within two seconds, also where another one runs but stands still;
    /// a start at login, which nobody waits for, may take eleven where the session is slow.
    [[nodiscard]] static std::unique_ptr<ApplicationInstance> create(bool launchedAtLogin);
};

} // namespace orlimo
