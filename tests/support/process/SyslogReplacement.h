#pragma once

#include <string>

namespace orlimo {

/// What an entry is handed to: its priority, with the facility, and its text.
using SyslogHandler = void (*)(int priority, const std::string& text);

/// From here on every entry of this process goes to `handler` instead of the system's log. What the
/// log mask excludes arrives too. Entries before the first call are lost.
void setSyslogHandler(SyslogHandler handler);

} // namespace orlimo
