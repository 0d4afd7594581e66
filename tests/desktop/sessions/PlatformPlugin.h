#pragma once

#include <string>

#include <sys/types.h>

namespace orlimo {

/// By which of the toolkit's platforms the program `process` is on the screen: "wayland", "xcb", or
/// nothing as long as it has none.
[[nodiscard]] std::string platformOf(pid_t process);

} // namespace orlimo
