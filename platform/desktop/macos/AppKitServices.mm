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
                // As Qt documents winId() on this platform.
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
        // Not activate(): that is only a request, which the system denies to a program that did not
        // get the focus from the active one, although the user has just clicked its icon. The
        // window would open without the focus, and so never lose it and close.
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
