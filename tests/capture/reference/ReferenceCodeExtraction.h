#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The outcome of the code rule, by a second and deliberately simple implementation.
struct ReferenceCodes
{
    /// The code, the first of the numbers found.
    std::optional<std::string> code;
    /// The expected log.
    std::vector<std::string> lines;
};

/// Of `text`, which is well-formed UTF-8.
[[nodiscard]] ReferenceCodes referenceCodes(const std::string& text, bool withFourDigits);

} // namespace orlimo
