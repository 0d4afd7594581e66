#pragma once

#include <string_view>

namespace orlimo {

/// Writes "Failed to OPERATION launch at login: REASON" to the system's log, at error level, for
/// the subsystem "app.orlimo.Orlimo.LaunchAtLogin" and the category "main". Both arguments are
/// UTF-8. Writes nothing while error-level logging is off. Any thread.
void logLoginItemError(std::string_view operation, std::string_view reason);

} // namespace orlimo
