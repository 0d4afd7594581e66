#pragma once

#include "sample/ArchivedBody.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orlimo {

/// `bytes` as the store reader returns them: two upper-case hexadecimal digits a byte.
[[nodiscard]] inline std::string asHexadecimal(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<std::uint8_t>(byte);
        text.push_back(digits[value / 16]);
        text.push_back(digits[value % 16]);
    }
    return text;
}

/// The archived length of a string of `length` bytes: one byte, or from 128 on the byte 81 and two
/// more.
[[nodiscard]] inline std::string archivedLength(std::size_t length)
{
    if (length < 128) {
        return {static_cast<char>(length)};
    }
    return {'\x81', static_cast<char>(length % 256), static_cast<char>(length / 256)};
}

/// The body of a message with a mutable string, as it is stored.
[[nodiscard]] inline std::string mutableStringBody(std::string_view messageText)
{
    const auto bytes = sample::archivedBody(messageText, sample::ArchivedString::mutableString);
    return {bytes.begin(), bytes.end()};
}

/// The same with an immutable string, whose fixed run differs in one byte.
[[nodiscard]] inline std::string immutableStringBody(std::string_view messageText)
{
    const auto bytes = sample::archivedBody(messageText, sample::ArchivedString::immutableString);
    return {bytes.begin(), bytes.end()};
}

} // namespace orlimo
