#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The names in the folder, without "." and "..", in no order. None when it cannot be listed.
[[nodiscard]] std::optional<std::vector<std::string>>
contentsOfDirectory(const std::filesystem::path& folder);

} // namespace orlimo
