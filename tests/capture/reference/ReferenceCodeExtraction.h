#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// What the code rule makes of a message's text: a second implementation, kept plain on purpose, to
/// judge the program's own by.
struct ReferenceCodes
{
    /// The code, the first of the numbers found.
    std::optional<std::string> code;
    /// What the log is to show.
    std::vector<std::string> lines;
};

/// Of `text`, which is well-formed UTF-8.
[[nodiscard]] ReferenceCodes referenceCodes(const std::string& text, bool withFourDigits);

} // namespace orlimo
