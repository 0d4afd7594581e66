#pragma once

#include <string>

namespace orlimo {

/// The value of a variable of this process's environment; empty when it is unset. Main thread, the
/// only one that writes the environment.
[[nodiscard]] std::string environmentVariable(const char* name);

} // namespace orlimo
