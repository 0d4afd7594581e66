#pragma once

#include <string_view>

namespace orlimo {

/// The boolean that a stored string stands for: true when, after white space, it begins with Y, y,
/// T, t or a decimal number that is not zero.
[[nodiscard]] bool booleanValue(std::string_view text);

} // namespace orlimo
