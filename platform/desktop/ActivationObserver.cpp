#include "platform/desktop/ActivationObserver.h"

#include <utility>

namespace orlimo {

ActivationObserver::ActivationObserver(std::function<void()> activationHandler)
    : willBecomeActive(std::move(activationHandler))
{}

void ActivationObserver::activityDidChange(bool isNowActive)
{
    const bool wasActive = std::exchange(isActive, isNowActive);
    if (isNowActive && !wasActive) {
        ++pendingNotifications;
        notifyPending();
    }
}

void ActivationObserver::launchingDidFinish()
{
    hasFinishedLaunching = true;
    notifyPending();
}

void ActivationObserver::notifyPending()
{
    while (hasFinishedLaunching && pendingNotifications > 0) {
        --pendingNotifications;
        willBecomeActive();
    }
}

} // namespace orlimo
