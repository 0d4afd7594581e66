#pragma once

#include <filesystem>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>

#include <sys/types.h>

namespace orlimo {

/// What every program on a tests' desktop has in its environment, whatever the desktop: English
/// texts, texts for assistive technology, and nothing of the desktop of whoever runs the tests.
[[nodiscard]] std::map<std::string, std::optional<std::string>> desktopVariables();

/// Which of `programs` this machine lacks, in words; empty when it has all.
[[nodiscard]] std::string missingProgram(std::initializer_list<std::filesystem::path> programs);

/// By which of Qt's platforms the program `process` is on the screen: "wayland", "xcb", or nothing
/// as long as it has none.
[[nodiscard]] std::string platformOf(pid_t process);

} // namespace orlimo
