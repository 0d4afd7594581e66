#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// One well-formed sequence of a text, or one maximal part that is not.
struct ReferenceUtf8Part
{
    std::size_t start = 0;
    std::size_t length = 0;
    bool isWellFormed = false;
    /// Where well-formed.
    char32_t codePoint = 0;
};

/// `bytes` split into its sequences by the table of well-formed byte sequences in the Unicode
/// standard. An independent implementation, deliberately simple.
[[nodiscard]] std::vector<ReferenceUtf8Part> referenceUtf8Parts(std::string_view bytes);

[[nodiscard]] bool isReferenceWellFormed(std::string_view bytes);

/// `bytes` with U+FFFD for each ill-formed part.
[[nodiscard]] std::string referenceRepaired(std::string_view bytes);

/// `codePoint` as UTF-8.
[[nodiscard]] std::string referenceUtf8(char32_t codePoint);

/// The boundaries of the grapheme clusters of `text` (UTF-8), in bytes and ascending: one more than
/// there are clusters, none in an empty text.
[[nodiscard]] std::vector<std::size_t> referenceGraphemeClusterBoundaries(const std::string& text);

/// How many grapheme clusters `text` has.
[[nodiscard]] std::size_t referenceGraphemeClusterCount(const std::string& text);

} // namespace orlimo
