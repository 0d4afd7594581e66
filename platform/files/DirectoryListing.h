#pragma once

#include <filesystem>

namespace orlimo {

/// Whether the folder can be listed to its end; an empty one can. Any thread.
[[nodiscard]] bool canListDirectory(const std::filesystem::path& folder);

} // namespace orlimo
