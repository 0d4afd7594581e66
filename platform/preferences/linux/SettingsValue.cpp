#include "platform/preferences/linux/SettingsValue.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <charconv>

namespace orlimo {

namespace {

/// Takes an escape sequence, of which the backslash is gone, off `text`.
char takeEscape(std::string_view& text)
{
    constexpr std::string_view letters = "abfnrtv";
    constexpr std::string_view meanings = "\a\b\f\n\r\t\v";
    const char first = text.front();
    text.remove_prefix(1);
    if (const auto found = letters.find(first); found != std::string_view::npos) {
        return meanings.at(found);
    }
    unsigned code = 0;
    if (first == 'x') {
        const auto [end, error] = std::from_chars(text.begin(), text.end(), code, 16);
        text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
        return static_cast<char>(code);
    }
    return first == '0' ? '\0' : first;
}

} // namespace

std::optional<std::string> storedString(std::string_view text)
{
    if (text.starts_with('@')) {
        return std::nullopt;
    }
    std::string string;
    bool isQuoted = false;
    while (!text.empty()) {
        const char character = text.front();
        text.remove_prefix(1);
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == '\\' && !text.empty()) {
            string += takeEscape(text);
        } else if (character == ',' && !isQuoted) {
            return std::nullopt;
        } else if (character == ';' && !isQuoted) {
            break;
        } else {
            string += character;
        }
    }
    return string;
}

bool booleanValue(std::string_view string)
{
    static const QRegularExpression isTrue(
        QStringLiteral(R"(\A\s*(?:[YyTt]|[+-]?0*(?:\.0*)?[1-9]))"));
    return isTrue.match(QString::fromUtf8(string.data(), static_cast<qsizetype>(string.size())))
        .hasMatch();
}

} // namespace orlimo
