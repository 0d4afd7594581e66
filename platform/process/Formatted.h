#pragma once

#include <array>
#include <string>
#include <string_view>

namespace orlimo {

/// `format` with each "%s" replaced by the next argument. What an argument holds is text, whatever
/// it looks like; places beyond the last argument stay. Any thread.
[[nodiscard]] std::string
formatted(std::string_view format, const std::array<std::string_view, 2>& arguments);

} // namespace orlimo
