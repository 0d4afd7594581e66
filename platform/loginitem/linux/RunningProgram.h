#pragma once

#include <filesystem>

namespace orlimo {

/// The program file to which a link like /proc/self/exe leads. For a program that was deleted while
/// it runs, its former path, where there may be no file or that of an update. Empty where the link
/// cannot be read.
[[nodiscard]] std::filesystem::path
runningProgram(const std::filesystem::path& link = "/proc/self/exe");

} // namespace orlimo
