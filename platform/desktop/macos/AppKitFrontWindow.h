#pragma once

#include "platform/desktop/FrontWindow.h"
#include "platform/desktop/macos/AppKitServices.h"

namespace orlimo {

/// The same on the system's windows as `host` has them.
void orderFrontRegardless(QWidget& window, const AppKitServices& services);

} // namespace orlimo
