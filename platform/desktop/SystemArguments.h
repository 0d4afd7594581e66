#pragma once

#include <cstddef>
#include <span>

namespace orlimo {

/// How many of the arguments, from the first one on, the system has put on the command line for its
/// own libraries; 0 where the first one is the program's. Any thread.
[[nodiscard]] std::size_t systemArgumentCount(std::span<const char* const> arguments);

} // namespace orlimo
