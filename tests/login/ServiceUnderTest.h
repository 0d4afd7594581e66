#pragma once

#include "tests/login/ScriptedLoginItemService.h"

namespace orlimo {

/// The service that a test of LaunchAtLogin works on, which does what `script` says and writes into
/// its list. Where the host's own service can be scripted it is that one. `script` must live as
/// long as the service is used.
[[nodiscard]] LoginItemService& serviceUnderTest(ScriptedLoginItemService& script);

} // namespace orlimo
