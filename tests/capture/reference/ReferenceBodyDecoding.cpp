#include "tests/capture/reference/ReferenceBodyDecoding.h"

#include "tests/capture/reference/ReferenceUnicode.h"

#include <QString>
#include <QStringList>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace orlimo {

namespace {

QString uppercase(const std::string& text)
{
    std::string upper;
    icu::UnicodeString::fromUTF8(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
    return QString::fromStdString(upper);
}

unsigned nibbleOf(char character)
{
    const unsigned index = (static_cast<unsigned char>(character) & 0x1FU) ^ 0x10U;
    if (index <= 9) {
        return index;
    }
    if (index >= 17 && index <= 22) {
        return index - 7;
    }
    return 0;
}

/// Absent on a fatal stop.
std::optional<std::string> bytesOf(const std::string& text)
{
    const std::size_t count = referenceGraphemeClusterCount(text);
    std::string bytes;
    for (std::size_t place = 0; place < count; place += 2) {
        if (place + 1 >= text.size()) {
            return std::nullopt;
        }
        bytes += static_cast<char>(nibbleOf(text[place]) * 16 + nibbleOf(text[place + 1]));
    }
    return bytes;
}

} // namespace

ReferenceDecoding referenceDecoding(const std::string& hexadecimalText)
{
    const QStringList pieces = uppercase(hexadecimalText).split(QStringLiteral("4E53537472696E67"));
    if (pieces.size() < 2) {
        return {.isFatal = true};
    }
    const auto bytes =
        bytesOf(QString(pieces[1]).remove(QStringLiteral("019584012B")).toStdString());
    if (!bytes || bytes->empty()) {
        return {.isFatal = true};
    }
    const auto byte = [&bytes](std::size_t place) -> std::size_t {
        return static_cast<unsigned char>(bytes->at(place));
    };
    const bool isLong = byte(0) == 129;
    const std::string line = isLong ? "first 129" : "first not 129 " + std::to_string(byte(0));
    const ReferenceDecoding fatal{.lines = {line}, .isFatal = true};
    const std::size_t start = isLong ? 3 : 1;
    if (bytes->size() <= start) {
        return fatal;
    }
    const std::size_t length = isLong ? byte(1) + 256 * byte(2) : byte(0);
    const std::string messageText = bytes->substr(start, length);
    if (length == 0 || messageText.size() < length) {
        return fatal;
    }
    if (isReferenceWellFormed(messageText)) {
        return {.lines = {line}, .messageText = messageText};
    }
    return isLong ? fatal : ReferenceDecoding{.lines = {line}};
}

} // namespace orlimo
