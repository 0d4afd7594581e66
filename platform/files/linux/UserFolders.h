#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orlimo {

/// The user's home: the value of the variable HOME, or the user database's where that is empty.
/// Absent when both are. Main thread.
[[nodiscard]] std::optional<std::filesystem::path> homeFolder();

/// Creates `folder` and its missing parents with mode 0700, as the XDG base directory specification
/// asks for. Returns 0 when the folder exists afterwards, the errno value otherwise. Any thread.
[[nodiscard]] int makeUserFolder(const std::filesystem::path& folder);

} // namespace orlimo
