#pragma once

#include <string>
#include <variant>
#include <vector>

namespace orlimo {

/// What becomes of a message body: a second implementation, kept plain on purpose, to judge the
/// program's own by.
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
    /// What the log is to show.
    std::vector<std::string> lines;
};

/// Of `hexadecimalText`, which is well-formed UTF-8.
[[nodiscard]] ReferenceDecoding referenceDecoding(const std::string& hexadecimalText);

} // namespace orlimo
