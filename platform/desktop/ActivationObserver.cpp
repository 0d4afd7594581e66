#include "platform/desktop/ActivationObserver.h"

#include <utility>

namespace orlimo {

ActivationObserver::ActivationObserver(std::function<void()> whoIsTold)
    : willBecomeActive(std::move(whoIsTold))
{}

void ActivationObserver::activityDidChange(bool isNowActive)
{
    const bool wasActive = std::exchange(isActive, isNowActive);
    if (isNowActive && !wasActive) {
        ++untold;
        tell();
    }
}

void ActivationObserver::launchingDidFinish()
{
    hasFinishedLaunching = true;
    tell();
}

void ActivationObserver::tell()
{
    while (hasFinishedLaunching && untold > 0) {
        --untold;
        willBecomeActive();
    }
}

} // namespace orlimo
