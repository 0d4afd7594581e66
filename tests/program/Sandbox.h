#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {

/// What makes a Flatpak of the system for one program: everything in its place, and the file that
/// only a Flatpak has. `folder` is the test's own.
[[nodiscard]] std::vector<std::string> sandboxLauncher(const std::filesystem::path& folder);

/// Whether the system lets this process build such walls.
[[nodiscard]] bool canSandbox(const std::vector<std::string>& launcher);

} // namespace orlimo
