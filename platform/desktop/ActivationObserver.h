#pragma once

#include <functional>

namespace orlimo {

/// Notifies once each time the application goes from inactive to active. Activations before
/// launching has finished are reported right after it. Main thread.
class ActivationObserver
{
public:
    explicit ActivationObserver(std::function<void()> activationHandler);

    /// Reports the current state, which may be unchanged.
    void activityDidChange(bool isNowActive);

    void launchingDidFinish();

private:
    void notifyPending();

    std::function<void()> willBecomeActive;
    bool isActive = false;
    bool hasFinishedLaunching = false;
    int pendingNotifications = 0;
};

} // namespace orlimo
