#pragma once

#include "platform/FrontWindow.h"
#include "platform/macos/AppKitHost.h"

namespace orlimo {

/// The same on the system's windows as `host` has them.
void orderFrontRegardless(QWidget& window, const AppKitHost& host);

} // namespace orlimo
