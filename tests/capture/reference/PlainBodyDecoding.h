#pragma once

#include <string>
#include <variant>
#include <vector>

namespace orlimo {

/// What becomes of a message body: a second implementation, kept plain on purpose, to judge the
/// program's own by.
struct PlainDecoding
{
    struct Words
    {
        std::string text;
    };
    struct Nothing
    {};
    struct Fatal
    {};

    std::variant<Words, Nothing, Fatal> outcome;
    /// What the log is to show.
    std::vector<std::string> lines;
};

/// Of `hexadecimalText`, which is well-formed UTF-8.
[[nodiscard]] PlainDecoding plainDecoding(const std::string& hexadecimalText);

} // namespace orlimo
