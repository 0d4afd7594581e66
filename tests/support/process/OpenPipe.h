#pragma once

#include <array>

namespace orlimo {

/// Makes a pipe that no program which is started inherits, and returns the end to read from and the
/// end to write to, which the caller closes. Throws std::system_error where there can be none.
[[nodiscard]] std::array<int, 2> openPipe();

} // namespace orlimo
