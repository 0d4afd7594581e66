#pragma once

#include "platform/desktop/macos/NotificationObserver.h"

#include <functional>

namespace orlimo {

class ApplicationDelegate;

/// Tells a delegate of the turns of the application's life when the system tells of them, in its
/// order and within its notifications: the launch event is still current when launching has
/// finished. Main thread.
class AppKitLifecycle
{
public:
    /// `delegate` must outlive the turns. `launchingDidFinish` is called after the delegate's turn
    /// of that name.
    AppKitLifecycle(ApplicationDelegate& delegate, std::function<void()> launchingDidFinish);

private:
    NotificationObserver willFinishLaunching;
    NotificationObserver didFinishLaunching;
    NotificationObserver willBecomeActive;
};

} // namespace orlimo
