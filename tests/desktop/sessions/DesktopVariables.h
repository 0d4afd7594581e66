#pragma once

#include <map>
#include <optional>
#include <string>

namespace orlimo {

/// What every program on a tests' desktop has in its environment, whatever the desktop: English
/// texts, texts for assistive technology, and nothing of the desktop of whoever runs the tests.
[[nodiscard]] std::map<std::string, std::optional<std::string>> desktopVariables();

} // namespace orlimo
