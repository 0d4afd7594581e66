#pragma once

#include <cstddef>
#include <span>

namespace orlimo {

/// How many leading arguments the system has put on the command line for its own libraries; 0 if
/// the first one is the program's. Any thread.
[[nodiscard]] std::size_t systemArgumentCount(std::span<const char* const> arguments);

} // namespace orlimo
