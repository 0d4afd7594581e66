#pragma once

#include <string>
#include <variant>
#include <vector>

namespace orlimo {

/// The outcome of decoding a message body, by a second and deliberately simple implementation.
struct ReferenceDecoding
{
    struct MessageText
    {
        std::string text;
    };
    struct NoText
    {};
    struct Fatal
    {};

    std::variant<MessageText, NoText, Fatal> outcome;
    /// The expected log.
    std::vector<std::string> lines;
};

/// Of `hexadecimalText`, which is well-formed UTF-8.
[[nodiscard]] ReferenceDecoding referenceDecoding(const std::string& hexadecimalText);

} // namespace orlimo
