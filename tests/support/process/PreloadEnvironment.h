#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The environment variables that have a program load `libraries` ahead of its own: paths, or names
/// that the loader finds. The sanitizers let themselves be preceded that way.
[[nodiscard]] std::map<std::string, std::optional<std::string>>
preloadEnvironment(const std::vector<std::string>& libraries);

} // namespace orlimo
