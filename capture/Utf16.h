#pragma once

#include <unicode/unistr.h>

#include <string_view>

namespace orlimo {

/// `text`, UTF-8, in the form in which ICU searches and counts.
[[nodiscard]] icu::UnicodeString asUtf16(std::string_view text);

} // namespace orlimo
