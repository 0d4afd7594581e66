#include "capture/BodyDecoding.h"

#include "capture/GraphemeClusters.h"
#include "capture/Unicode.h"
#include "platform/process/FatalStop.h"
#include "platform/process/LogLine.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>

namespace orlimo {

namespace {

/// The class name "NSString" in hexadecimal.
constexpr std::string_view marker = "4E53537472696E67";

/// The bytes between the class name and the length in the archive of a mutable string: the class's
/// version, references to classes named before, and the type "+" of a counted run of bytes.
constexpr std::string_view stringPreamble = "019584012B";

/// The first byte of a length of two bytes; any other is the length itself.
constexpr std::uint8_t twoByteLengthTag = 0x81;

// clang-format off
/// The values of hexadecimal digits; other characters have a value too.
constexpr std::array<std::uint8_t, 32> nibbles{
    0, 1, 2, 3, 4, 5, 6, 7, 8, 9,
    0, 0, 0, 0, 0, 0, 0,
    10, 11, 12, 13, 14, 15,
    0, 0, 0, 0, 0, 0, 0, 0, 0};
// clang-format on

constexpr std::uint8_t nibble(char character)
{
    return nibbles[(static_cast<std::uint8_t>(character) & 0x1FU) ^ 0x10U];
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char character) {
        return static_cast<std::uint8_t>(character) < 0x80;
    });
}

std::string uppercased(std::string_view text)
{
    std::string upper;
    if (isAscii(text)) {
        upper.resize(text.size());
        std::transform(text.begin(), text.end(), upper.begin(), [](char character) {
            const bool isLowercase = character >= 'a' && character <= 'z';
            return static_cast<char>(isLowercase ? character - ('a' - 'A') : character);
        });
    } else {
        asUtf16(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
    }
    return upper;
}

std::size_t graphemeClusterCount(std::string_view text)
{
    // In ASCII every byte is a grapheme cluster, except in a line break of two bytes.
    if (isAscii(text) && text.find("\r\n") == std::string_view::npos) {
        return text.size();
    }
    const icu::UnicodeString utf16Text = asUtf16(text);
    return GraphemeClusters(utf16Text).count();
}

/// The part of `text` between the first marker and the next one, or the end.
std::string_view segmentAfterMarker(std::string_view text)
{
    const std::size_t found = text.find(marker);
    if (found == std::string_view::npos) {
        fatalStop("a message body holds no string");
    }
    text.remove_prefix(found + marker.size());
    return text.substr(0, text.find(marker));
}

std::string withoutStringPreamble(std::string_view text)
{
    std::string stripped;
    stripped.reserve(text.size());
    for (;;) {
        const std::size_t found = text.find(stringPreamble);
        stripped.append(text.substr(0, found));
        if (found == std::string_view::npos) {
            return stripped;
        }
        text.remove_prefix(found + stringPreamble.size());
    }
}

/// `length` bytes of `bytes` from `start` on. Too few of them are a fatal stop.
std::string textAt(const std::vector<std::uint8_t>& bytes, std::size_t start, std::size_t length)
{
    if (length == 0) {
        fatalStop("the string in a message body has no length");
    }
    if (bytes.size() < start + length) {
        fatalStop("the string in a message body is cut short");
    }
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    return {first, first + static_cast<std::ptrdiff_t>(length)};
}

} // namespace

std::vector<std::uint8_t> hexToBytes(std::string_view text)
{
    const std::size_t count = graphemeClusterCount(text);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count / 2);
    for (std::size_t index = 0; index < count; index += 2) {
        if (index + 1 >= text.size()) {
            fatalStop("a message body ends in the middle of a byte");
        }
        bytes.push_back(
            static_cast<std::uint8_t>((nibble(text[index]) << 4U) | nibble(text[index + 1])));
    }
    return bytes;
}

std::optional<std::string> decodeAttributedBody(std::string_view hexadecimalText)
{
    const std::string upper = uppercased(hexadecimalText);
    const auto bytes = hexToBytes(withoutStringPreamble(segmentAfterMarker(upper)));
    if (bytes.empty()) {
        fatalStop("nothing follows the string's class name in a message body");
    }
    if (bytes[0] != twoByteLengthTag) {
        writeLogLine("first not 129 " + std::to_string(bytes[0]));
        const std::string text = textAt(bytes, 1, bytes[0]);
        return isWellFormedUtf8(text) ? std::optional(text) : std::nullopt;
    }
    writeLogLine("first 129");
    if (bytes.size() < 3) {
        fatalStop("the length in a message body is cut short");
    }
    std::string text = textAt(bytes, 3, bytes[1] + 256U * bytes[2]);
    if (!isWellFormedUtf8(text)) {
        fatalStop("the string in a message body is not UTF-8");
    }
    return text;
}

} // namespace orlimo
