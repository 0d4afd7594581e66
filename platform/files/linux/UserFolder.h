#pragma once

#include <filesystem>

namespace orlimo {

/// Makes `folder` and those above it that are missing, for the user alone, as the desktop's rules
/// for such folders want it. The number of the error; 0 when it is there. Any thread.
[[nodiscard]] int makeUserFolder(const std::filesystem::path& folder);

} // namespace orlimo
