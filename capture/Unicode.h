#pragma once

#include <unicode/unistr.h>

#include <string>
#include <string_view>

namespace orlimo {

/// Whether `bytes` are well-formed UTF-8. Strict: overlong forms, surrogates, values above U+10FFFF
/// and truncated sequences are not.
[[nodiscard]] bool isWellFormedUtf8(std::string_view bytes);

/// `bytes` as UTF-8 text, with each maximal ill-formed part replaced by U+FFFD.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// `text`, UTF-8, as UTF-16, in which ICU searches and counts.
[[nodiscard]] icu::UnicodeString asUtf16(std::string_view text);

} // namespace orlimo
