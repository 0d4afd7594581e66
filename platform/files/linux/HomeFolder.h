#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orlimo {

/// Where the user's home is: the value of the HOME variable unless it is unset or empty, then the
/// home of the user database's entry, absent when neither says anything.
[[nodiscard]] std::optional<std::filesystem::path>
homeFolder(const char* homeVariable, const std::optional<std::string>& homeInUserDatabase);

/// The home folder in the user database's entry of the user who runs the process.
[[nodiscard]] std::optional<std::string> homeInUserDatabase();

} // namespace orlimo
