#include "tests/capture/reference/ReferenceBodyDecoding.h"

#include "tests/capture/reference/ReferenceUnicode.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <optional>

namespace orlimo {

namespace {

using Byte = unsigned char;

std::string uppercase(const std::string& text)
{
    std::string upper;
    icu::UnicodeString::fromUTF8(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
    return upper;
}

std::vector<std::string> split(const std::string& text, const std::string& separator)
{
    std::vector<std::string> pieces(1);
    for (std::size_t place = 0; place < text.size();) {
        if (text.compare(place, separator.size(), separator) == 0) {
            pieces.emplace_back();
            place += separator.size();
        } else {
            pieces.back() += text[place];
            ++place;
        }
    }
    return pieces;
}

std::string joined(const std::vector<std::string>& pieces)
{
    std::string whole;
    for (const std::string& piece : pieces) {
        whole += piece;
    }
    return whole;
}

unsigned nibbleOf(char character)
{
    const unsigned index = (static_cast<Byte>(character) & 0x1FU) ^ 0x10U;
    if (index <= 9) {
        return index;
    }
    if (index >= 17 && index <= 22) {
        return index - 7;
    }
    return 0;
}

/// Absent on a fatal stop.
std::optional<std::vector<Byte>> bytesOf(const std::string& text)
{
    const std::size_t count = referenceGraphemeClusterCount(text);
    std::vector<Byte> bytes;
    for (std::size_t place = 0; place < count; place += 2) {
        if (place + 1 >= text.size()) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<Byte>(nibbleOf(text[place]) * 16 + nibbleOf(text[place + 1])));
    }
    return bytes;
}

std::string textIn(const std::vector<Byte>& bytes, std::size_t first, std::size_t length)
{
    std::string messageText;
    for (std::size_t place = first; place < first + length; ++place) {
        messageText += static_cast<char>(bytes[place]);
    }
    return messageText;
}

} // namespace

ReferenceDecoding referenceDecoding(const std::string& hexadecimalText)
{
    const ReferenceDecoding::Fatal fatal;
    const auto pieces = split(uppercase(hexadecimalText), "4E53537472696E67");
    if (pieces.size() < 2) {
        return {fatal, {}};
    }
    const auto bytes = bytesOf(joined(split(pieces[1], "019584012B")));
    if (!bytes || bytes->empty()) {
        return {fatal, {}};
    }
    const Byte first = bytes->front();
    if (first != 129) {
        const std::vector<std::string> lines{"first not 129 " + std::to_string(first)};
        if (first == 0 || bytes->size() <= first) {
            return {fatal, lines};
        }
        const std::string messageText = textIn(*bytes, 1, first);
        if (!isReferenceWellFormed(messageText)) {
            return {ReferenceDecoding::NoText(), lines};
        }
        return {ReferenceDecoding::MessageText{messageText}, lines};
    }
    const std::vector<std::string> lines{"first 129"};
    if (bytes->size() < 3) {
        return {fatal, lines};
    }
    const std::size_t length = bytes->at(1) + 256U * bytes->at(2);
    if (length == 0 || bytes->size() < length + 3) {
        return {fatal, lines};
    }
    const std::string messageText = textIn(*bytes, 3, length);
    if (!isReferenceWellFormed(messageText)) {
        return {fatal, lines};
    }
    return {ReferenceDecoding::MessageText{messageText}, lines};
}

} // namespace orlimo
