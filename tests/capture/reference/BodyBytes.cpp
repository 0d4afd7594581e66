#include "tests/capture/reference/BodyBytes.h"

#include "sample/ArchivedBody.h"

#include <cstdint>

namespace orlimo {

namespace {

std::string archived(std::string_view messageText, sample::ArchivedString string)
{
    const auto bytes = sample::archivedBody(messageText, string);
    return {bytes.begin(), bytes.end()};
}

} // namespace

std::string asHexadecimal(std::string_view bytes)
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

std::string archivedLength(std::size_t length)
{
    if (length < 128) {
        return {static_cast<char>(length)};
    }
    return {'\x81', static_cast<char>(length % 256), static_cast<char>(length / 256)};
}

std::string mutableStringBody(std::string_view messageText)
{
    return archived(messageText, sample::ArchivedString::mutableString);
}

std::string immutableStringBody(std::string_view messageText)
{
    return archived(messageText, sample::ArchivedString::immutableString);
}

} // namespace orlimo
