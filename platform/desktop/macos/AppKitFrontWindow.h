#pragma once

#include "platform/desktop/Workspace.h"
#include "platform/desktop/macos/AppKitServices.h"

namespace orlimo {

/// The same with the system's windows as `services` maps them.
void orderFrontRegardless(QWidget& window, const AppKitServices& services);

} // namespace orlimo
