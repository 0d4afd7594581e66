#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orlimo {

/// The string that QSettings stores as `text` after the equals sign: quotes and escapes undone.
/// Absent for a list and for a value of another type than string, number or boolean.
[[nodiscard]] std::optional<std::string> storedString(std::string_view text);

/// The boolean that a stored string stands for: true when, after white space, it begins with Y, y,
/// T, t or a decimal number that is not zero.
[[nodiscard]] bool booleanValue(std::string_view string);

} // namespace orlimo
