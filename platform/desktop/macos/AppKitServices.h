#pragma once

#include <QWidget>

#include <functional>

#import <AppKit/AppKit.h>

namespace orlimo {

/// How the toolkit stands to the system's windows and event loop. Main thread.
struct AppKitServices
{
    /// Whether the toolkit's event loop is the system's own and its windows are on the screen; not
    /// so on a platform of the toolkit's for tests, where nothing of the window server is touched.
    bool isAvailable = false;
    /// The system's view of a top level window of the toolkit; nil where there is none.
    std::function<NSView*(const QWidget&)> viewOf = [](const QWidget& /*window*/) -> NSView* {
        return nil;
    };

    /// The one there is. Once the toolkit's application object exists.
    [[nodiscard]] static AppKitServices detect();
};

/// Makes the program the active one, although it is an agent and another one is active. Takes
/// effect a little later. Main thread.
void activateApplication();

/// Gives the focus back to the program that had it before, unless this one has another window to
/// work in. Main thread.
void yieldFocus();

} // namespace orlimo
