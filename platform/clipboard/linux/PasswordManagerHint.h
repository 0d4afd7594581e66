#pragma once

#include <string_view>

/// What password managers put on a clipboard beside a text, so that clipboard managers do not keep
/// it: data of this type, with this value. Introduced by KDE's Klipper, and heeded by others.
namespace orlimo::passwordManagerHint {

inline constexpr const char* type = "x-kde-passwordManagerHint";
inline constexpr std::string_view value = "secret";

} // namespace orlimo::passwordManagerHint
