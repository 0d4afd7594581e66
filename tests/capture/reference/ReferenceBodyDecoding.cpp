#include "tests/capture/reference/ReferenceBodyDecoding.h"

#include "tests/capture/reference/ReferenceUnicode.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <optional>

namespace orlimo {

namespace {

using Byte = unsigned char;

std::u16string asUtf16(const std::string& text)
{
    // A UTF-16 text never has more units than the UTF-8 one has bytes.
    std::u16string units(text.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(
        units.data(),
        static_cast<std::int32_t>(units.size()),
        &length,
        text.data(),
        static_cast<std::int32_t>(text.size()),
        &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    units.resize(static_cast<std::size_t>(length));
    return units;
}

std::string asUtf8(const std::u16string& units)
{
    std::string text(units.size() * 3, '\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(
        text.data(),
        static_cast<std::int32_t>(text.size()),
        &length,
        units.data(),
        static_cast<std::int32_t>(units.size()),
        &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string uppercase(const std::string& text)
{
    if (text.empty()) {
        return text;
    }
    const std::u16string units = asUtf16(text);
    // No character becomes more than three.
    std::u16string upper(units.size() * 3, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = u_strToUpper(
        upper.data(),
        static_cast<std::int32_t>(upper.size()),
        units.data(),
        static_cast<std::int32_t>(units.size()),
        "",
        &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    upper.resize(static_cast<std::size_t>(length));
    return asUtf8(upper);
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

/// Absent for a fatal stop.
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
