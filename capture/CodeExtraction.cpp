#include "capture/CodeExtraction.h"

#include "capture/GraphemeClusters.h"
#include "capture/PreferenceKeys.h"
#include "capture/Utf16.h"
#include "platform/process/LogLine.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>

namespace orlimo {

namespace {

constexpr std::string_view fiveOrSixDigits = R"((?<!\d)\d{5,6}(?!\d))";
constexpr std::string_view fourToSixDigits = R"((?<!\d)\d{4,6}(?!\d))";

/// The list in printed form: ["482913", "1234"].
std::string formattedList(const std::vector<std::string>& numbers)
{
    std::string list = "[";
    for (const std::string& number : numbers) {
        list.append(list.size() > 1 ? ", \"" : "\"").append(number).append("\"");
    }
    return list + "]";
}

/// The expression for `pattern`; none when it cannot be compiled.
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

/// The expression by which codes are found: compiled at its first use and kept from then on. None
/// when it cannot be compiled; the next use tries again.
const icu::RegexPattern* codePattern(bool withFourDigits)
{
    static std::array<std::unique_ptr<icu::RegexPattern>, 2> cache;
    auto& expression = cache.at(withFourDigits ? 1 : 0);
    if (expression == nullptr) {
        expression = compilePattern(withFourDigits ? fourToSixDigits : fiveOrSixDigits);
    }
    return expression.get();
}

/// The parts of `text` that match `expression` and are whole characters, left to right.
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
    const icu::RegexPattern* const pattern = codePattern(withFourDigits);
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
