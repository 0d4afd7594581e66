#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orlimo {

/// Where the characters of `text` (UTF-8), as a reader counts them, begin and end, in bytes: one
/// more place than there are characters, none in an empty text. In ascending order.
[[nodiscard]] std::vector<std::size_t> referenceGraphemeClusterBoundaries(const std::string& text);

/// How many characters `text` has.
[[nodiscard]] std::size_t referenceGraphemeClusterCount(const std::string& text);

} // namespace orlimo
