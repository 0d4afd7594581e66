#pragma once

#include <QWidget>

#include <functional>

#import <AppKit/AppKit.h>

namespace orlimo {

/// How Qt relates to the system's windows and event loop. Main thread.
struct AppKitServices
{
    /// Whether Qt's event loop is the system's own and its windows are on the screen. False on Qt's
    /// platforms for tests, where the window server must not be used.
    bool isAvailable = false;
    /// The system's view of a top-level window of Qt; nil if there is none.
    std::function<NSView*(const QWidget&)> viewOf = [](const QWidget& /*window*/) -> NSView* {
        return nil;
    };

    /// The real services. Requires Qt's application object.
    [[nodiscard]] static AppKitServices detect();
};

/// Makes the program active although it is an agent and another program is active. Takes effect
/// a little later. Main thread.
void activateApplication();

/// Returns the focus to the program that had it before, unless another window of this one has it.
/// Main thread.
void yieldFocus();

} // namespace orlimo
