#include "tests/capture/reference/ReferenceCodeExtraction.h"

#include "tests/capture/reference/ReferenceUnicode.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace orlimo {

namespace {

bool isDigit(char32_t codePoint)
{
    return u_charType(static_cast<UChar32>(codePoint)) == U_DECIMAL_DIGIT_NUMBER;
}

/// A stretch of digits with no digit on either side.
struct Run
{
    std::size_t start = 0;
    std::size_t end = 0;
    std::size_t digits = 0;
};

std::vector<Run> runsOfDigits(const std::string& text)
{
    std::vector<Run> runs;
    bool insideRun = false;
    for (const ReferenceUtf8Part& part : referenceUtf8Parts(text)) {
        if (!isDigit(part.codePoint)) {
            insideRun = false;
            continue;
        }
        if (!insideRun) {
            runs.push_back({.start = part.start});
            insideRun = true;
        }
        runs.back().end = part.start + part.length;
        ++runs.back().digits;
    }
    return runs;
}

bool isIn(const std::vector<std::size_t>& places, std::size_t place)
{
    return std::binary_search(places.begin(), places.end(), place);
}

std::vector<std::string> numbersIn(const std::string& text, std::size_t fewestDigits)
{
    const auto boundaries = referenceGraphemeClusterBoundaries(text);
    std::vector<std::string> numbers;
    for (const Run& run : runsOfDigits(text)) {
        const bool qualifies = run.digits >= fewestDigits && run.digits <= 6;
        const bool isWhole = isIn(boundaries, run.start) && isIn(boundaries, run.end);
        if (qualifies && isWhole) {
            numbers.push_back(text.substr(run.start, run.end - run.start));
        }
    }
    return numbers;
}

std::string listOf(const std::vector<std::string>& numbers)
{
    std::string list;
    for (const std::string& number : numbers) {
        if (!list.empty()) {
            list += ", ";
        }
        list += '"' + number + '"';
    }
    return '[' + list + ']';
}

} // namespace

ReferenceCodes referenceCodes(const std::string& text, bool withFourDigits)
{
    ReferenceCodes codes;
    codes.lines.push_back(text);
    const auto numbers = numbersIn(text, withFourDigits ? 4 : 5);
    if (!numbers.empty()) {
        codes.lines.push_back("Found numbers: " + listOf(numbers));
        codes.code = numbers.front();
    }
    return codes;
}

} // namespace orlimo
