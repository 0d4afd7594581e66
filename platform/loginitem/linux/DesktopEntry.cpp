#include "platform/loginitem/linux/DesktopEntry.h"

#include <algorithm>

namespace orlimo::desktopEntry {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\v\f";
    const auto first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Takes the first line, without its end, off `text`.
std::string_view takeLine(std::string_view& text)
{
    const auto line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return trimmed(line);
}

} // namespace

std::string stringValue(std::string_view text)
{
    std::string value;
    for (const char character : text) {
        switch (character) {
        case '\\':
            value += R"(\\)";
            break;
        case '\n':
            value += R"(\n)";
            break;
        case '\t':
            value += R"(\t)";
            break;
        case '\r':
            value += R"(\r)";
            break;
        default:
            value += character;
        }
    }
    // Blanks at either end of a value do not count as part of it.
    if (value.ends_with(' ')) {
        value.replace(value.size() - 1, 1, R"(\s)");
    }
    if (value.starts_with(' ')) {
        value.replace(0, 1, R"(\s)");
    }
    return value;
}

std::string execArgument(std::string_view text)
{
    constexpr std::string_view special = R"("`$\)";
    std::string quoted = "\"";
    for (const char character : text) {
        if (special.find(character) != std::string_view::npos) {
            quoted += '\\';
        } else if (character == '%') {
            quoted += '%';
        }
        quoted += character;
    }
    return stringValue(quoted + '"');
}

std::optional<std::string_view> lastValue(std::string_view content, std::string_view key)
{
    std::optional<std::string_view> value;
    bool isInGroup = false;
    while (!content.empty()) {
        const auto line = takeLine(content);
        const auto equals = line.find('=');
        if (line.starts_with('[')) {
            isInGroup = line == "[Desktop Entry]";
        } else if (
            isInGroup && equals != std::string_view::npos && trimmed(line.substr(0, equals)) == key)
        {
            value = trimmed(line.substr(equals + 1));
        }
    }
    return value;
}

} // namespace orlimo::desktopEntry
