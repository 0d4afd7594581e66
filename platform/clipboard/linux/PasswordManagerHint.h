#pragma once

#include <string_view>

/// The type and value that password managers put on a clipboard beside a text so that clipboard
/// managers do not store it. Introduced by KDE's Klipper and honoured by others.
namespace orlimo::passwordManagerHint {

inline constexpr const char* type = "x-kde-passwordManagerHint";
inline constexpr std::string_view value = "secret";

} // namespace orlimo::passwordManagerHint
