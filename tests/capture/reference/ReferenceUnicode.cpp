#include "tests/capture/reference/ReferenceUnicode.h"

#include <gtest/gtest.h>
#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace orlimo {

namespace {

struct Range
{
    std::uint8_t low;
    std::uint8_t high;

    [[nodiscard]] bool holds(char byte) const
    {
        const auto value = static_cast<std::uint8_t>(byte);
        return low <= value && value <= high;
    }
};

/// The rows of the table, one range for each byte.
const std::vector<std::vector<Range>>& wellFormedSequences()
{
    constexpr Range any{0x80, 0xBF};
    static const std::vector<std::vector<Range>> rows{
        {{0x00, 0x7F}},
        {{0xC2, 0xDF}, any},
        {{0xE0, 0xE0}, {0xA0, 0xBF}, any},
        {{0xE1, 0xEC}, any, any},
        {{0xED, 0xED}, {0x80, 0x9F}, any},
        {{0xEE, 0xEF}, any, any},
        {{0xF0, 0xF0}, {0x90, 0xBF}, any, any},
        {{0xF1, 0xF3}, any, any, any},
        {{0xF4, 0xF4}, {0x80, 0x8F}, any, any},
    };
    return rows;
}

/// How many bytes from `start` on fit the row.
std::size_t fittingBytes(std::string_view bytes, std::size_t start, const std::vector<Range>& row)
{
    std::size_t fitting = 0;
    while (fitting < row.size() && start + fitting < bytes.size() &&
           row[fitting].holds(bytes[start + fitting]))
    {
        ++fitting;
    }
    return fitting;
}

char32_t valueOf(std::string_view sequence)
{
    constexpr std::array<unsigned, 5> firstByteMasks{0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t value = static_cast<std::uint8_t>(sequence[0]) & firstByteMasks.at(sequence.size());
    for (const char byte : sequence.substr(1)) {
        value = value * 64 + (static_cast<std::uint8_t>(byte) & 0x3FU);
    }
    return value;
}

} // namespace

std::vector<ReferenceUtf8Part> referenceUtf8Parts(std::string_view bytes)
{
    std::vector<ReferenceUtf8Part> parts;
    for (std::size_t start = 0; start < bytes.size(); start += parts.back().length) {
        ReferenceUtf8Part part{.start = start, .length = 1};
        for (const auto& row : wellFormedSequences()) {
            const std::size_t fitting = fittingBytes(bytes, start, row);
            part.length = std::max(part.length, fitting);
            if (fitting == row.size()) {
                part.isWellFormed = true;
                part.codePoint = valueOf(bytes.substr(start, fitting));
            }
        }
        parts.push_back(part);
    }
    return parts;
}

bool isReferenceWellFormed(std::string_view bytes)
{
    const auto parts = referenceUtf8Parts(bytes);
    return std::all_of(parts.begin(), parts.end(), [](const ReferenceUtf8Part& part) {
        return part.isWellFormed;
    });
}

std::string referenceRepaired(std::string_view bytes)
{
    std::string repaired;
    for (const ReferenceUtf8Part& part : referenceUtf8Parts(bytes)) {
        repaired += part.isWellFormed ? std::string(bytes.substr(part.start, part.length))
                                      : referenceUtf8(0xFFFD);
    }
    return repaired;
}

std::string referenceUtf8(char32_t codePoint)
{
    const auto byte = [](char32_t value) { return static_cast<char>(value); };
    const auto following = [&](unsigned shift) {
        return byte(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0U | (codePoint >> 6U)), following(0)};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0U | (codePoint >> 12U)), following(6), following(0)};
    }
    return {byte(0xF0U | (codePoint >> 18U)), following(12), following(6), following(0)};
}

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
