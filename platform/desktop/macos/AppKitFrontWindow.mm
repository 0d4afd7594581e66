#include "platform/desktop/macos/AppKitFrontWindow.h"

#include <QWidget>

namespace orlimo {

void orderFrontRegardless(QWidget& window, const AppKitServices& services)
{
    if (!services.isAvailable) {
        window.raise();
        return;
    }
    @autoreleasepool {
        [[services.viewOf(window) window] orderFrontRegardless];
    }
}

void orderFrontRegardless(QWidget& window)
{
    orderFrontRegardless(window, AppKitServices::detect());
}

} // namespace orlimo
