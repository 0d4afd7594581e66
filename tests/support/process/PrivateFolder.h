#pragma once

#include <filesystem>

namespace orlimo {

/// Makes `folder` one that only the user may enter, as programs expect of their runtime folder, and
/// returns it.
std::filesystem::path makePrivateFolder(const std::filesystem::path& folder);

} // namespace orlimo
