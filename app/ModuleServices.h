#pragma once

#include "app/DelegateServices.h"
#include "app/panel/MenuServices.h"
#include "capture/CaptureServices.h"
#include "login/LoginServices.h"
#include "platform/services/Services.h"

namespace orlimo {

/// What each module works on, out of the system's services. Main thread.

/// With the shared store reader, which the first call creates.
[[nodiscard]] CaptureServices captureServices(const Services& services);
[[nodiscard]] LoginServices loginServices(const Services& services);
/// Both change launch at login through what `LaunchAtLogin::install` was given.
[[nodiscard]] DelegateServices delegateServices(const Services& services);
[[nodiscard]] MenuServices menuServices(const Services& services);

} // namespace orlimo
