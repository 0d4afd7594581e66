#include "tests/capture/reference/ReferenceGraphemeClusters.h"

#include <gtest/gtest.h>
#include <unicode/ubrk.h>
#include <unicode/utext.h>

namespace orlimo {

std::vector<std::size_t> referenceGraphemeClusterBoundaries(const std::string& text)
{
    std::vector<std::size_t> boundaries;
    if (text.empty()) {
        return boundaries;
    }
    UErrorCode status = U_ZERO_ERROR;
    UText* const bytes =
        utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    UBreakIterator* const iterator = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    ubrk_setUText(iterator, bytes, &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    for (std::int32_t place = ubrk_first(iterator); place != UBRK_DONE; place = ubrk_next(iterator))
    {
        boundaries.push_back(static_cast<std::size_t>(place));
    }
    ubrk_close(iterator);
    utext_close(bytes);
    return boundaries;
}

std::size_t referenceGraphemeClusterCount(const std::string& text)
{
    const auto boundaries = referenceGraphemeClusterBoundaries(text);
    return boundaries.empty() ? 0 : boundaries.size() - 1;
}

} // namespace orlimo
