#include "capture/CodeExtraction.h"

#include "capture/Preferences.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/uclean.h>

#include <cstdlib>
#include <iostream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <unistd.h>

namespace orlimo {

namespace {

using Lines = std::vector<std::string>;
using Code = std::optional<std::string>;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

void expectExtraction(const std::string& text, bool withFourDigits, const Lines& numbers)
{
    MemoryUserDefaults defaults;
    defaults.setBool(withFourDigits, preference::fourDigitInclude);
    Lines lines{text};
    if (!numbers.empty()) {
        std::string list;
        for (const std::string& number : numbers) {
            list.append(list.empty() ? "\"" : ", \"").append(number).append("\"");
        }
        lines.push_back("Found numbers: [" + list + "]");
    }
    Code code;
    Lines log;
    {
        const OutputCapture capture;
        code = extractCode(text, defaults);
        log = linesOf(capture.text());
    }
    EXPECT_EQ(code, numbers.empty() ? std::nullopt : Code(numbers.front()));
    EXPECT_EQ(log, lines);
}

/// Whether ICU is refused memory, so that it can compile nothing.
bool isMemoryRefused = false;

/// Makes ICU obey `isMemoryRefused`. For the whole process: call it in a child, before ICU is used.
void controlMemoryOfIcu()
{
    u_cleanup();
    UErrorCode status = U_ZERO_ERROR;
    u_setMemoryFunctions(
        nullptr,
        [](const void*, std::size_t size) { return isMemoryRefused ? nullptr : std::malloc(size); },
        [](const void*, void* memory, std::size_t size) {
            return isMemoryRefused ? nullptr : std::realloc(memory, size);
        },
        [](const void*, void* memory) { std::free(memory); },
        &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
}

struct TextCase
{
    std::string name;
    std::string text;
    Lines numbers; ///< of five or six digits
    Lines withFourDigits;
    friend void PrintTo(const TextCase& given, std::ostream* stream) { *stream << given.name; }
};

class CodeExtractionOfText : public testing::TestWithParam<TextCase>
{};

TEST_P(CodeExtractionOfText, FindsNumbersAsThePreferenceSays)
{
    const auto& [name, text, numbers, withFourDigits] = GetParam();
    expectExtraction(text, false, numbers);
    expectExtraction(text, true, withFourDigits);
}

std::string tenThousandDigits()
{
    std::string digits;
    while (digits.size() < 10'000) {
        digits += "8675309421";
    }
    return digits;
}

const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";

INSTANTIATE_TEST_SUITE_P(
    Texts,
    CodeExtractionOfText,
    testing::Values(
        TextCase{"Empty", "", {}, {}},
        TextCase{"ThreeDigitsTwice", "123-456", {}, {}},
        TextCase{"FourDigits", "Code 1234", {}, {"1234"}},
        TextCase{"FiveDigitsBetweenLetters", "Code12345is", {"12345"}, {"12345"}},
        TextCase{"SixDigits", "Your code is 123456.", {"123456"}, {"123456"}},
        TextCase{"SevenDigits", "1234567", {}, {}},
        TextCase{"EightDigitsAndFive", "12345678 and 55555", {"55555"}, {"55555"}},
        TextCase{"DigitsBetweenLetters", "A1B2C3", {}, {}},
        TextCase{"TwoCodes", "Use 98765 or 123456", {"98765", "123456"}, {"98765", "123456"}},
        TextCase{"FourDigitsBeforeSix", "PIN 4321, code 654321", {"654321"}, {"4321", "654321"}},
        TextCase{"TenThousandDigits", tenThousandDigits(), {}, {}},
        TextCase{
            "CodeBetweenTenThousandDigits",
            tenThousandDigits() + " 123456 " + tenThousandDigits(),
            {"123456"},
            {"123456"}},
        // Digits of other scripts count, and prevent matches as neighbours.
        TextCase{"FullWidth", "Code １２３４５６.", {"１２３４５６"}, {"１２３４５６"}},
        TextCase{"ArabicIndic", "Code ٤٨٢٩١٣.", {"٤٨٢٩١٣"}, {"٤٨٢٩١٣"}},
        TextCase{"MixedScripts", "12３٤५", {"12３٤५"}, {"12３٤५"}},
        TextCase{
            "MathematicalOfTwoUnitsEach",
            "\U0001D7CE\U0001D7CF\U0001D7D0\U0001D7D1",
            {},
            {"\U0001D7CE\U0001D7CF\U0001D7D0\U0001D7D1"}},
        TextCase{"OtherDigitBefore", "\U0001D7CE123456", {}, {}},
        TextCase{"OtherDigitAfter", "123456٦", {}, {}},
        // Superscript two, Roman numeral two, circled one and a Han number are no decimal digits.
        TextCase{"OtherNumerals", "²12345Ⅱ ①98765五", {"12345", "98765"}, {"12345", "98765"}},
        // A match that begins or ends inside a character is skipped.
        TextCase{"CombiningMark", "12345\u0301 98765", {"98765"}, {"98765"}},
        TextCase{"Keycap", "12345\u20E3 1234\uFE0F\u20E3", {}, {}},
        TextCase{"Joiner", "12345\u200D", {}, {}},
        TextCase{"NumberSignJoinsWhatFollows", "\u060012345 98765", {"98765"}, {"98765"}},
        TextCase{"MarkSplitsRun", "12345\u030167890", {"67890"}, {"67890"}},
        TextCase{
            "LongCharactersBeside",
            "e\u030112345" + family + "98765",
            {"12345", "98765"},
            {"12345", "98765"}}),
    [](const auto& given) { return given.param.name; });

TEST(CodeExtraction, LineBreaksAndNulAreLoggedUnchanged)
{
    MemoryUserDefaults defaults;
    const OutputCapture capture;
    (void)extractCode("\r\n123456\r\nand\n12345\0a6"s, defaults);
    EXPECT_EQ(
        capture.text(), "\r\n123456\r\nand\n12345\0a6\nFound numbers: [\"123456\", \"12345\"]\n"s);
}

TEST(CodeExtraction, PreferenceIsReadAtEachCall)
{
    MemoryUserDefaults defaults;
    const OutputCapture capture;
    (void)extractCode("Code 1234", defaults);
    (void)extractCode("", defaults);
    EXPECT_THAT(defaults.calls(), ElementsAre("read fourDigitInclude", "read fourDigitInclude"));
}

/// Extracts codes while ICU gets memory for some calls only. Exits with 0 if the log is as
/// expected.
[[noreturn]] void logWithAndWithoutMemory()
{
    MemoryUserDefaults defaults;
    controlMemoryOfIcu();
    // Initialises what all patterns share.
    (void)findNumbers("", "any");
    std::vector<std::string> lines;
    {
        const OutputCapture capture;
        for (const bool isRefused : {true, false, true}) {
            isMemoryRefused = isRefused;
            (void)extractCode("Code 123456", defaults);
        }
        isMemoryRefused = false;
        lines = capture.lines();
    }
    const std::vector<std::string> expected{
        "Code 123456",
        "Invalid regex pattern",
        "Code 123456",
        R"(Found numbers: ["123456"])",
        "Code 123456",
    };
    if (lines != expected) {
        std::cerr << testing::PrintToString(lines) << std::endl;
    }
    ::_exit(lines == expected ? 0 : 1);
}

TEST(CodeExtraction, PatternIsCompiledOnceAndRetriedAfterFailure)
{
    // In a fresh process, which has compiled none yet.
    EXPECT_EXIT(logWithAndWithoutMemory(), testing::ExitedWithCode(0), "");
}

TEST(FindNumbers, InvalidPatternIsNothingAndSilent)
{
    const OutputCapture capture;
    std::string_view withoutLastParenthesis = codePattern::fiveOrSixDigits;
    withoutLastParenthesis.remove_suffix(1);
    EXPECT_EQ(findNumbers("123456", withoutLastParenthesis), std::nullopt);
    EXPECT_EQ(findNumbers("123456", "["), std::nullopt);
    EXPECT_EQ(capture.text(), "");
}

TEST(FindNumbers, MatchesComeLeftToRightWithoutOverlap)
{
    EXPECT_THAT(findNumbers("letters", R"(\d+)"), Optional(IsEmpty()));
    EXPECT_THAT(findNumbers("12345 67", R"(\d{2})"), Optional(ElementsAre("12", "34", "67")));
    EXPECT_THAT(findNumbers("ab AB ab", "ab"), Optional(ElementsAre("ab", "ab")));
    EXPECT_THAT(findNumbers("a\na", "^a"), Optional(ElementsAre("a")));
    EXPECT_THAT(
        findNumbers("1234 12345", codePattern::fiveOrSixDigits), Optional(ElementsAre("12345")));
    EXPECT_THAT(
        findNumbers("1234 12345", codePattern::fourToSixDigits),
        Optional(ElementsAre("1234", "12345")));
}

} // namespace

} // namespace orlimo
