#include "platform/desktop/macos/AppKitFrontWindow.h"

#include <QWidget>

namespace orlimo {

void orderFrontRegardless(QWidget& window, const AppKitHost& host)
{
    if (!host.isThere) {
        window.raise();
        return;
    }
    @autoreleasepool {
        [[host.viewOf(window) window] orderFrontRegardless];
    }
}

void orderFrontRegardless(QWidget& window)
{
    orderFrontRegardless(window, AppKitHost::native());
}

} // namespace orlimo
