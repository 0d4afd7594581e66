#include "tests/capture/PlainCharacters.h"

#include <gtest/gtest.h>
#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <functional>

namespace orlimo {

namespace {

/// Tells of each place where a character begins or ends, in ascending order.
void visitBoundaries(const std::string& text, const std::function<void(std::size_t)>& visit)
{
    if (text.empty()) {
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    UText* const bytes =
        utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    UBreakIterator* const iterator = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    ubrk_setUText(iterator, bytes, &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    for (std::int32_t place = ubrk_first(iterator); place != UBRK_DONE; place = ubrk_next(iterator))
    {
        visit(static_cast<std::size_t>(place));
    }
    ubrk_close(iterator);
    utext_close(bytes);
}

} // namespace

std::set<std::size_t> plainCharacterBoundaries(const std::string& text)
{
    std::set<std::size_t> boundaries;
    visitBoundaries(text, [&](std::size_t place) { boundaries.insert(place); });
    return boundaries;
}

std::size_t plainCharacterCount(const std::string& text)
{
    std::size_t boundaries = 0;
    visitBoundaries(text, [&](std::size_t) { ++boundaries; });
    return boundaries == 0 ? 0 : boundaries - 1;
}

} // namespace orlimo
