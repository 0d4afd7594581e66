#pragma once

#include "platform/desktop/macos/NotificationObserver.h"

#include <functional>

namespace orlimo {

class ApplicationDelegate;

/// Notifies a delegate of the application's lifecycle events in the order of the system's
/// notifications and within them: the launch event is still current when launching has finished.
/// Main thread.
class AppKitLifecycle
{
public:
    /// `delegate` must outlive this object. `launchingDidFinish` is called after the delegate's
    /// method of that name.
    AppKitLifecycle(ApplicationDelegate& delegate, std::function<void()> launchingDidFinish);

private:
    NotificationObserver willFinishLaunching;
    NotificationObserver didFinishLaunching;
    NotificationObserver willBecomeActive;
};

} // namespace orlimo
