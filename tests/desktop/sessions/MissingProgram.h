#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>

namespace orlimo {

/// Which of `programs` this machine has not, in words; empty when it has all.
[[nodiscard]] std::string missingProgram(std::initializer_list<std::filesystem::path> programs);

} // namespace orlimo
