#include "capture/CodeExtraction.h"

#include "capture/GraphemeClusters.h"
#include "capture/Preferences.h"
#include "capture/Unicode.h"
#include "platform/process/LogLine.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>

namespace orlimo {

namespace {

/// The printed form of a list: ["482913", "1234"].
std::string formattedList(const std::vector<std::string>& numbers)
{
    std::string list = "[";
    for (const std::string& number : numbers) {
        list.append(list.size() > 1 ? ", \"" : "\"").append(number).append("\"");
    }
    return list + "]";
}

/// The compiled `pattern`; null if it is invalid.
std::unique_ptr<icu::RegexPattern> compilePattern(std::string_view pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError{};
    std::unique_ptr<icu::RegexPattern> expression(
        icu::RegexPattern::compile(asUtf16(pattern), 0, parseError, status));
    if (U_FAILURE(status)) {
        expression.reset();
    }
    return expression;
}

/// The pattern by which codes are found, compiled at its first use and kept. Null if it cannot be
/// compiled; the next use tries again.
const icu::RegexPattern* compiledPattern(bool withFourDigits)
{
    static std::array<std::unique_ptr<icu::RegexPattern>, 2> cache;
    auto& expression = cache.at(withFourDigits ? 1 : 0);
    if (expression == nullptr) {
        expression = compilePattern(
            withFourDigits ? codePattern::fourToSixDigits : codePattern::fiveOrSixDigits);
    }
    return expression.get();
}

/// The parts of `text` that match `expression` and consist of whole grapheme clusters, left to
/// right.
std::vector<std::string> matches(const icu::RegexPattern& expression, const std::string& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString utf16Text = asUtf16(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(expression.matcher(utf16Text, status));
    std::vector<std::string> numbers;
    std::optional<GraphemeClusters> clusters;
    while (U_SUCCESS(status) && matcher->find(status) != 0) {
        if (!clusters) {
            clusters.emplace(utf16Text);
        }
        const std::int32_t start = matcher->start(status);
        const std::int32_t end = matcher->end(status);
        if (clusters->isBoundary(start) && clusters->isBoundary(end)) {
            utf16Text.tempSubStringBetween(start, end).toUTF8String(numbers.emplace_back());
        }
    }
    return numbers;
}

} // namespace

std::optional<std::vector<std::string>>
findNumbers(const std::string& text, std::string_view pattern)
{
    const auto expression = compilePattern(pattern);
    return expression == nullptr ? std::nullopt : std::optional(matches(*expression, text));
}

std::optional<std::string> extractCode(const std::string& text, const UserDefaults& defaults)
{
    writeLogLine(text);
    const bool withFourDigits = defaults.boolForKey(preference::fourDigitInclude);
    const icu::RegexPattern* const pattern = compiledPattern(withFourDigits);
    if (pattern == nullptr) {
        writeLogLine("Invalid regex pattern");
        return std::nullopt;
    }
    const auto numbers = matches(*pattern, text);
    if (numbers.empty()) {
        return std::nullopt;
    }
    writeLogLine("Found numbers: " + formattedList(numbers));
    return numbers.front();
}

} // namespace orlimo
