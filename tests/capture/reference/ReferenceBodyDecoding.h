#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The outcome of decoding a message body, by a second and deliberately simple implementation.
struct ReferenceDecoding
{
    /// The expected log.
    std::vector<std::string> lines{};
    /// The text. Absent also after a fatal stop.
    std::optional<std::string> messageText{};
    bool isFatal = false;
};

/// Of `hexadecimalText`, which is well-formed UTF-8.
[[nodiscard]] ReferenceDecoding referenceDecoding(const std::string& hexadecimalText);

} // namespace orlimo
