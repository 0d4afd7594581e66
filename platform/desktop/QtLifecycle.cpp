#include "platform/desktop/QtLifecycle.h"

#include "platform/desktop/ApplicationDelegate.h"

#include <utility>

namespace orlimo {

QtLifecycle::QtLifecycle(ApplicationDelegate& delegate, std::function<bool()> launchingDidFinish)
    : applicationDelegate(delegate)
    , activations([&delegate] { delegate.applicationWillBecomeActive(); })
    , activity([this](bool isActive) { activations.activityDidChange(isActive); })
{
    launchTimer.setSingleShot(true);
    launchTimer.setInterval(0);
    QObject::connect(
        &launchTimer,
        &QTimer::timeout,
        &launchTimer,
        [this, didFinish = std::move(launchingDidFinish)] {
            applicationDelegate.applicationDidFinishLaunching();
            if (didFinish()) {
                activations.launchingDidFinish();
            }
        });
}

void QtLifecycle::begin()
{
    applicationDelegate.applicationWillFinishLaunching();
    launchTimer.start();
}

} // namespace orlimo
