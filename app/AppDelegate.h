#pragma once

#include "app/DelegateServices.h"
#include "capture/Message.h"
#include "platform/desktop/ApplicationDelegate.h"

#include <QWidget>

#include <memory>

namespace orlimo {

/// What the application does at its lifecycle events. Main thread.
class AppDelegate : public ApplicationDelegate
{
public:
    explicit AppDelegate(DelegateServices delegateServices);

    /// Stores the preference defaults where they are absent, then switches launch at login on, each
    /// time, whatever the preference says.
    void applicationWillFinishLaunching() override;

    /// Shows the guidance window when the program has no access to the whole disk.
    void applicationDidFinishLaunching() override;

    /// Has the newest messages read again. Without a controller a fatal stop.
    void applicationWillBecomeActive() override;

    /// Shows the guidance window in the middle of the main screen, in front of everything. Without
    /// a screen nothing is shown.
    void showHelperWindow();

    /// Never assigned.
    std::unique_ptr<QWidget> window;
    /// The guidance window, once it has been shown; the user closes it.
    std::unique_ptr<QWidget> secondaryWindow;
    /// The application's capture controller, handed over before the first lifecycle event.
    std::shared_ptr<Message> message;

private:
    DelegateServices services;
};

} // namespace orlimo
