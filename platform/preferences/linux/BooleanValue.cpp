#include "platform/preferences/linux/BooleanValue.h"

#include <algorithm>

namespace orlimo {

bool booleanValue(std::string_view text)
{
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    constexpr std::string_view digits = "0123456789";
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    if (text.empty()) {
        return false;
    }
    if (std::string_view("YyTt").find(text.front()) != std::string_view::npos) {
        return true;
    }
    if (text.front() == '+' || text.front() == '-') {
        text.remove_prefix(1);
    }
    const auto wholePart = text.substr(0, text.find_first_not_of(digits));
    auto fraction = text.substr(wholePart.size());
    fraction = fraction.starts_with('.') ? fraction.substr(1) : std::string_view();
    fraction = fraction.substr(0, fraction.find_first_not_of(digits));
    const auto isNotZero = [](char digit) { return digit != '0'; };
    return std::any_of(wholePart.begin(), wholePart.end(), isNotZero) ||
           std::any_of(fraction.begin(), fraction.end(), isNotZero);
}

} // namespace orlimo
