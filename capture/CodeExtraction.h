#pragma once

#include "platform/preferences/UserDefaults.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// The regular expressions (ICU) that a code matches: a run of decimal digits of any script that no
/// further digit touches.
namespace codePattern {

inline constexpr std::string_view fiveOrSixDigits = R"((?<!\d)\d{5,6}(?!\d))";
/// Where the preference `fourDigitInclude` is on.
inline constexpr std::string_view fourToSixDigits = R"((?<!\d)\d{4,6}(?!\d))";

} // namespace codePattern

/// The verification code in a message's text (UTF-8): the leftmost match of the pattern that the
/// preference `fourDigitInclude` selects. Nothing if the text holds none.
///
/// Logs the text and the numbers found. Reads the preference at each call; each pattern is compiled
/// at its first use and kept. Main thread; does not fail.
[[nodiscard]] std::optional<std::string>
extractCode(const std::string& text, const UserDefaults& defaults);

/// The parts of `text` that match the regular expression `pattern`, left to right and without
/// overlap; a match that begins or ends inside a grapheme cluster is skipped. Nothing if the
/// pattern is invalid.
[[nodiscard]] std::optional<std::vector<std::string>>
findNumbers(const std::string& text, std::string_view pattern);

} // namespace orlimo
