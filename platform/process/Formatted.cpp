#include "platform/process/Formatted.h"

namespace orlimo {

std::string formatted(std::string_view format, const std::array<std::string_view, 2>& arguments)
{
    constexpr std::string_view placeholder = "%s";
    std::string text;
    for (const auto argument : arguments) {
        const auto found = format.find(placeholder);
        if (found == std::string_view::npos) {
            break;
        }
        text.append(format.substr(0, found)).append(argument);
        format.remove_prefix(found + placeholder.size());
    }
    return text.append(format);
}

} // namespace orlimo
