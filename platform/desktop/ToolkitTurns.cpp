#include "platform/desktop/ToolkitTurns.h"

#include "platform/desktop/ApplicationDelegate.h"

#include <utility>

namespace orlimo {

ToolkitTurns::ToolkitTurns(ApplicationDelegate& delegate, std::function<bool()> launchingDidFinish)
    : told(delegate)
    , activations([&delegate] { delegate.applicationWillBecomeActive(); })
    , activity([this](bool isActive) { activations.activityDidChange(isActive); })
{
    firstTurn.setSingleShot(true);
    firstTurn.setInterval(0);
    QObject::connect(
        &firstTurn,
        &QTimer::timeout,
        &firstTurn,
        [this, didFinish = std::move(launchingDidFinish)] {
            told.applicationDidFinishLaunching();
            if (didFinish()) {
                activations.launchingDidFinish();
            }
        });
}

void ToolkitTurns::begin()
{
    told.applicationWillFinishLaunching();
    firstTurn.start();
}

} // namespace orlimo
