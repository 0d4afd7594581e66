#pragma once

#include <functional>

namespace orlimo {

/// Sees when the application goes from inactive to active and tells of it, once each time. What
/// happens before launching has finished is told right after it. Main thread.
class ActivationObserver
{
public:
    explicit ActivationObserver(std::function<void()> activationHandler);

    /// The application is active or not from now on, as it was before or otherwise.
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
