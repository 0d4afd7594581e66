#include "capture/Utf16.h"

#include <cstdint>

namespace orlimo {

icu::UnicodeString asUtf16(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

} // namespace orlimo
