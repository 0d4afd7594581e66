#pragma once

#include <filesystem>

namespace orlimo {

/// The file of the program that a link like /proc/self/exe stands for. A program that was deleted
/// while it runs has its former file, which need not exist, or is another by now: that of an
/// update. Empty where the system does not tell.
[[nodiscard]] std::filesystem::path
runningProgram(const std::filesystem::path& link = "/proc/self/exe");

} // namespace orlimo
