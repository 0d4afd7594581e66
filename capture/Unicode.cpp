#include "capture/Unicode.h"

#include <unicode/ustring.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace orlimo {

namespace {

/// Reads one code point from `bytes` at `position` and advances past it; negative for an ill-formed
/// part, which is skipped whole.
UChar32 nextCodePoint(std::string_view bytes, std::size_t& position)
{
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    UChar32 codePoint = 0;
    U8_NEXT(data, position, bytes.size(), codePoint); // NOLINT: the macro's own arithmetic
    return codePoint;
}

} // namespace

bool isWellFormedUtf8(std::string_view bytes)
{
    for (std::size_t position = 0; position < bytes.size();) {
        if (nextCodePoint(bytes, position) < 0) {
            return false;
        }
    }
    return true;
}

std::string repairedUtf8(std::string_view bytes)
{
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string repaired;
    repaired.reserve(bytes.size());
    for (std::size_t position = 0; position < bytes.size();) {
        const std::size_t start = position;
        const bool wellFormed = nextCodePoint(bytes, position) >= 0;
        repaired.append(wellFormed ? bytes.substr(start, position - start) : replacement);
    }
    return repaired;
}

icu::UnicodeString asUtf16(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

} // namespace orlimo
