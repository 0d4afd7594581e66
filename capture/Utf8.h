#pragma once

#include <string>
#include <string_view>

namespace orlimo {

/// Whether `bytes` are well-formed UTF-8. Strict: overlong forms, surrogates, values above U+10FFFF
/// and cut sequences are not.
[[nodiscard]] bool isWellFormedUtf8(std::string_view bytes);

/// `bytes` as UTF-8 text, with U+FFFD in the place of each maximal ill-formed part.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

} // namespace orlimo
