#include "platform/desktop/SystemArguments.h"

#include <algorithm>
#include <string_view>

namespace orlimo {

namespace {

using namespace std::string_view_literals;

/// The process serial number that Launch Services of older systems pass to a program.
constexpr std::string_view processSerialNumber = "-psn_";

/// Whether an argument sets one of the system's own preferences for this run; its value follows.
bool isPreferenceOverride(std::string_view argument)
{
    return argument.starts_with("-NS"sv) || argument.starts_with("-Apple"sv);
}

} // namespace

std::size_t systemArgumentCount(std::span<const char* const> arguments)
{
    if (arguments.empty()) {
        return 0;
    }
    const std::string_view first = arguments.front();
    if (isPreferenceOverride(first)) {
        return std::min<std::size_t>(2, arguments.size());
    }
    return first.starts_with(processSerialNumber) ? 1 : 0;
}

} // namespace orlimo
