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

/// `bytes` cut into its sequences, by the table of well-formed byte sequences in the Unicode
/// standard. A second implementation, kept plain on purpose, to judge the program's own by.
[[nodiscard]] std::vector<ReferenceUtf8Part> referenceUtf8Parts(std::string_view bytes);

[[nodiscard]] bool isReferenceWellFormed(std::string_view bytes);

/// `bytes` with U+FFFD for each ill-formed part.
[[nodiscard]] std::string referenceRepaired(std::string_view bytes);

/// `codePoint` as UTF-8.
[[nodiscard]] std::string referenceUtf8(char32_t codePoint);

} // namespace orlimo
