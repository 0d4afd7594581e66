#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace orlimo {

/// Where the characters of `text` (UTF-8), as a reader counts them, begin and end, in bytes: one
/// more place than there are characters, none in an empty text.
[[nodiscard]] std::set<std::size_t> plainCharacterBoundaries(const std::string& text);

/// How many characters `text` has.
[[nodiscard]] std::size_t plainCharacterCount(const std::string& text);

} // namespace orlimo
