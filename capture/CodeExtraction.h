#pragma once

#include "platform/preferences/UserDefaults.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// The verification code in a message's text (UTF-8): the leftmost run of five or six decimal
/// digits, or of four to six where the preference `fourDigitInclude` says so, that no further digit
/// touches. Digits of every script count. Nothing when the text holds none.
///
/// Logs the text, and the numbers found. Reads the preference afresh; the two regular expressions
/// are compiled at their first use and kept. Main thread; does not fail.
[[nodiscard]] std::optional<std::string>
extractCode(const std::string& text, const UserDefaults& defaults);

/// The parts of `text` that match the regular expression `pattern`, left to right and without
/// overlap; a match that begins or ends inside a character is left out. Nothing when the pattern is
/// invalid.
[[nodiscard]] std::optional<std::vector<std::string>>
findNumbers(const std::string& text, std::string_view pattern);

} // namespace orlimo
