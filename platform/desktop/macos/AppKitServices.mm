#include "platform/desktop/macos/AppKitServices.h"

#include <QGuiApplication>

namespace orlimo {

AppKitServices AppKitServices::detect()
{
    if (QGuiApplication::platformName() != u"cocoa") {
        return {};
    }
    return {
        .isAvailable = true,
        .viewOf =
            [](const QWidget& window) {
                // The toolkit's documented meaning of a window's number on this platform.
                return reinterpret_cast<NSView*>(window.winId());
            },
    };
}

void activateApplication()
{
    @autoreleasepool {
        if ([NSApp isHidden]) {
            [NSApp unhideWithoutActivation];
        }
        // Not activate(): that only asks, and the system refuses a program that did not get the
        // focus from the active one, though the user has just clicked its icon. The window would
        // then open without the focus, and so never lose it and close.
        [NSApp activateIgnoringOtherApps:YES];
    }
}

void yieldFocus()
{
    @autoreleasepool {
        if ([NSApp isActive] && [NSApp keyWindow] == nil) {
            [NSApp hide:nil];
        }
    }
}

} // namespace orlimo
