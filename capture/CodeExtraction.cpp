#include "capture/CodeExtraction.h"

#include "capture/Characters.h"
#include "capture/PreferenceKeys.h"
#include "capture/Utf16.h"
#include "platform/LogLine.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>

namespace orlimo {

namespace {

constexpr std::string_view fiveOrSixDigits = R"((?<!\d)\d{5,6}(?!\d))";
constexpr std::string_view fourToSixDigits = R"((?<!\d)\d{4,6}(?!\d))";

/// The list in printed form: ["482913", "1234"].
std::string printed(const std::vector<std::string>& numbers)
{
    std::string list = "[";
    for (const std::string& number : numbers) {
        list.append(list.size() > 1 ? ", \"" : "\"").append(number).append("\"");
    }
    return list + "]";
}

} // namespace

std::optional<std::vector<std::string>>
findNumbers(const std::string& text, std::string_view pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    const std::unique_ptr<icu::RegexPattern> expression(
        icu::RegexPattern::compile(asUtf16(pattern), 0, where, status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    const icu::UnicodeString searched = asUtf16(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(expression->matcher(searched, status));
    std::vector<std::string> numbers;
    std::optional<Characters> characters;
    while (U_SUCCESS(status) && matcher->find(status) != 0) {
        if (!characters) {
            characters.emplace(searched);
        }
        const std::int32_t start = matcher->start(status);
        const std::int32_t end = matcher->end(status);
        if (characters->isBoundary(start) && characters->isBoundary(end)) {
            searched.tempSubStringBetween(start, end).toUTF8String(numbers.emplace_back());
        }
    }
    return numbers;
}

std::optional<std::string> extractCode(const std::string& text, const UserDefaults& defaults)
{
    writeLogLine(text);
    const bool withFourDigits = defaults.boolForKey(preference::fourDigitInclude);
    const auto numbers = findNumbers(text, withFourDigits ? fourToSixDigits : fiveOrSixDigits);
    if (!numbers) {
        writeLogLine("Invalid regex pattern");
        return std::nullopt;
    }
    if (numbers->empty()) {
        return std::nullopt;
    }
    writeLogLine("Found numbers: " + printed(*numbers));
    return numbers->front();
}

} // namespace orlimo
