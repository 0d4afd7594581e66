#include "capture/CodeExtraction.h"

#include "capture/PreferenceKeys.h"
#include "platform/process/LogLine.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/support/TemporaryFolder.h"
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

/// What becomes of one text, and what is logged on the way.
struct Extraction
{
    Code code;
    Lines lines;

    friend bool operator==(const Extraction&, const Extraction&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Extraction& extraction)
    {
        return stream << testing::PrintToString(extraction.code) << " after "
                      << testing::PrintToString(extraction.lines);
    }
};

Extraction extractionOf(const std::string& text, bool withFourDigits)
{
    MemoryUserDefaults defaults;
    defaults.setBool(withFourDigits, preference::fourDigitInclude);
    const OutputCapture capture;
    Code code = extractCode(text, defaults);
    return {std::move(code), linesOf(capture.text())};
}

/// The same where the text itself has line breaks: the log byte for byte.
std::string logOf(const std::string& text)
{
    MemoryUserDefaults defaults;
    const OutputCapture capture;
    (void)extractCode(text, defaults);
    return capture.text();
}

Extraction nothingIn(const std::string& text)
{
    return {std::nullopt, {text}};
}

/// Whether ICU is refused memory, so that it can compile nothing.
bool isMemoryRefused = false;

/// Has `isMemoryRefused` heeded. For the whole process: call it in a child, before ICU is used.
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
    Code withoutFourDigits;
    Lines foundWithoutFourDigits;
    Code withFourDigits;
    Lines foundWithFourDigits;
};

void PrintTo(const TextCase& textCase, std::ostream* stream)
{
    *stream << textCase.name;
}

class CodeExtractionOfText : public testing::TestWithParam<TextCase>
{};

Lines linesWith(const std::string& text, const Lines& found)
{
    Lines lines{text};
    lines.insert(lines.end(), found.begin(), found.end());
    return lines;
}

TEST_P(CodeExtractionOfText, FiveOrSixDigits)
{
    const TextCase& given = GetParam();
    EXPECT_EQ(
        extractionOf(given.text, false),
        (Extraction{given.withoutFourDigits, linesWith(given.text, given.foundWithoutFourDigits)}));
}

TEST_P(CodeExtractionOfText, FourToSixDigits)
{
    const TextCase& given = GetParam();
    EXPECT_EQ(
        extractionOf(given.text, true),
        (Extraction{given.withFourDigits, linesWith(given.text, given.foundWithFourDigits)}));
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    CodeExtractionOfText,
    testing::Values(
        TextCase{
            "SixDigits",
            "Your code is 123456.",
            "123456",
            {R"(Found numbers: ["123456"])"},
            "123456",
            {R"(Found numbers: ["123456"])"}},
        TextCase{"FourDigits", "Code 1234", {}, {}, "1234", {R"(Found numbers: ["1234"])"}},
        TextCase{"SevenDigits", "1234567", {}, {}, {}, {}},
        TextCase{
            "EightDigitsAndFive",
            "12345678 and 55555",
            "55555",
            {R"(Found numbers: ["55555"])"},
            "55555",
            {R"(Found numbers: ["55555"])"}},
        TextCase{"ThreeDigitsTwice", "123-456", {}, {}, {}, {}},
        TextCase{"DigitsBetweenLetters", "A1B2C3", {}, {}, {}, {}},
        TextCase{
            "TwoCodes",
            "Use 98765 or 123456",
            "98765",
            {R"(Found numbers: ["98765", "123456"])"},
            "98765",
            {R"(Found numbers: ["98765", "123456"])"}},
        TextCase{
            "FourDigitsBeforeSix",
            "PIN 4321, code 654321",
            "654321",
            {R"(Found numbers: ["654321"])"},
            "4321",
            {R"(Found numbers: ["4321", "654321"])"}},
        TextCase{"Empty", "", {}, {}, {}, {}},
        TextCase{
            "LettersTouchDigits",
            "Code12345is",
            "12345",
            {R"(Found numbers: ["12345"])"},
            "12345",
            {R"(Found numbers: ["12345"])"}},
        TextCase{
            "SixDigitsBeforeFour",
            "482913 1234",
            "482913",
            {R"(Found numbers: ["482913"])"},
            "482913",
            {R"(Found numbers: ["482913", "1234"])"}}),
    [](const auto& given) { return given.param.name; });

TEST(CodeExtraction, RunsOfEveryLength)
{
    for (std::size_t length = 1; length <= 12; ++length) {
        const std::string run = std::string("987654321012").substr(0, length);
        const std::string text = "a " + run + " b";
        const Extraction found{run, {text, "Found numbers: [\"" + run + "\"]"}};
        EXPECT_EQ(extractionOf(text, false), length == 5 || length == 6 ? found : nothingIn(text));
        EXPECT_EQ(extractionOf(text, true), length >= 4 && length <= 6 ? found : nothingIn(text));
    }
}

TEST(CodeExtraction, DigitsOfOtherScriptsCount)
{
    const Lines codes{
        "１２３４５６",                                       // full-width
        "٤٨٢٩١٣",                                             // Arabic-Indic
        "४८२९१३",                                             // Devanagari
        "\U0001D7CE\U0001D7CF\U0001D7D0\U0001D7D1\U0001D7D2", // mathematical, two units each
        "12３٤५",                                             // mixed
    };
    for (const std::string& code : codes) {
        const std::string text = "Code " + code + ".";
        EXPECT_EQ(
            extractionOf(text, false),
            (Extraction{code, {text, "Found numbers: [\"" + code + "\"]"}}));
    }
}

TEST(CodeExtraction, DigitsOfOtherScriptsPreventMatchesAsNeighbours)
{
    for (const std::string& text :
         {"１123456"s, "123456٦"s, "\U0001D7CE123456"s, "123456\U0001D7FF"s}) {
        EXPECT_EQ(extractionOf(text, true), nothingIn(text));
    }
}

TEST(CodeExtraction, NumeralsThatAreNoDecimalDigitsAreLikeLetters)
{
    // Superscript two, Roman numeral two, circled one, one half, and a Han number.
    for (const std::string& numeral : {"²"s, "Ⅱ"s, "①"s, "½"s, "五"s}) {
        std::string text = numeral;
        text.append("12345").append(numeral);
        EXPECT_EQ(
            extractionOf(text, false),
            (Extraction{"12345", {text, R"(Found numbers: ["12345"])"}}));
    }
}

TEST(CodeExtraction, MatchThatEndsInsideCharacterIsSkipped)
{
    // A combining acute accent, an enclosing keycap, one after a variation selector, a joiner.
    for (const std::string& mark : {"\u0301"s, "\u20E3"s, "\uFE0F\u20E3"s, "\u200D"s}) {
        const std::string alone = "12345" + mark;
        EXPECT_EQ(extractionOf(alone, true), nothingIn(alone));

        const std::string followed = "12345" + mark + " 98765";
        EXPECT_EQ(
            extractionOf(followed, true),
            (Extraction{"98765", {followed, R"(Found numbers: ["98765"])"}}));
    }
}

TEST(CodeExtraction, MatchThatBeginsInsideCharacterIsSkipped)
{
    const std::string text = "\u060012345 98765"; // the Arabic number sign joins what follows
    EXPECT_EQ(
        extractionOf(text, true), (Extraction{"98765", {text, R"(Found numbers: ["98765"])"}}));
}

TEST(CodeExtraction, MarksInsideRunSplitIt)
{
    // The mark is no digit, so that 12345 and 67890 are runs; the first ends inside a character.
    const std::string text = "12345\u030167890";
    EXPECT_EQ(
        extractionOf(text, true), (Extraction{"67890", {text, R"(Found numbers: ["67890"])"}}));
}

TEST(CodeExtraction, CharactersOfSeveralCodePointsBesideMatchDoNotMatter)
{
    for (const std::string& text :
         {"e\u030112345"s,
          "\U0001F1E9\U0001F1EA12345\U0001F1E9\U0001F1EA"s,
          "\U0001F468\u200D\U0001F469\u200D\U0001F46712345"s})
    {
        EXPECT_EQ(
            extractionOf(text, false),
            (Extraction{"12345", {text, R"(Found numbers: ["12345"])"}}));
    }
}

TEST(CodeExtraction, LineBreaksAreLoggedAsTheyAre)
{
    EXPECT_EQ(
        logOf("\r\n123456\r\nand\n98765"),
        "\r\n123456\r\nand\n98765\nFound numbers: [\"123456\", \"98765\"]\n");
}

TEST(CodeExtraction, NulIsCharacterLikeAnyOther)
{
    EXPECT_EQ(
        logOf("12345\0006 98765\0"s),
        "12345\0006 98765\0\nFound numbers: [\"12345\", \"98765\"]\n"s);
}

TEST(CodeExtraction, TenThousandDigitsHoldNoCode)
{
    std::string digits;
    while (digits.size() < 10'000) {
        digits += "8675309421";
    }
    EXPECT_EQ(extractionOf(digits, true), nothingIn(digits));

    const std::string andCode = digits + " 123456 " + digits;
    EXPECT_EQ(
        extractionOf(andCode, false),
        (Extraction{"123456", {andCode, R"(Found numbers: ["123456"])"}}));
}

TEST(CodeExtraction, EveryNumberOfManyIsLogged)
{
    std::string text;
    std::string list;
    for (int number = 10'000; number < 13'000; ++number) {
        const std::string digits = std::to_string(number);
        text.append(digits).append(" ");
        list.append(list.empty() ? "\"" : ", \"").append(digits).append("\"");
    }
    EXPECT_EQ(
        extractionOf(text, false), (Extraction{"10000", {text, "Found numbers: [" + list + "]"}}));
}

TEST(CodeExtraction, PreferenceIsReadOnceInEachCall)
{
    MemoryUserDefaults defaults;
    const OutputCapture capture;
    (void)extractCode("Code 1234", defaults);
    (void)extractCode("", defaults);
    EXPECT_THAT(defaults.calls(), ElementsAre("read fourDigitInclude", "read fourDigitInclude"));
}

TEST(CodeExtraction, OtherPreferencesDoNotMatter)
{
    MemoryUserDefaults defaults;
    defaults.setBool(true, preference::capturingEnabled);
    defaults.setBool(true, preference::loginItemEnabled);
    const OutputCapture capture;
    EXPECT_EQ(extractCode("Code 1234", defaults), std::nullopt);
}

/// What is logged where ICU gets memory for some calls and none for others. Exits with 0 when it is
/// what it should be.
[[noreturn]] void logWithAndWithoutMemory()
{
    MemoryUserDefaults defaults;
    controlMemoryOfIcu();
    // What ICU makes once for all patterns.
    (void)findNumbers("", "any");
    std::vector<std::string> lines;
    {
        const OutputCapture capture;
        for (const std::string text : {"Code 123456", "Code 1234"}) {
            for (const bool isRefused : {true, false, true, false}) {
                isMemoryRefused = isRefused;
                (void)extractCode(text, defaults);
            }
            defaults.setBool(true, preference::fourDigitInclude);
        }
        lines = capture.lines();
    }
    const std::vector<std::string> expected{
        "Code 123456",
        "Invalid regex pattern",
        "Code 123456",
        R"(Found numbers: ["123456"])",
        "Code 123456",
        "Code 123456",
        R"(Found numbers: ["123456"])",
        "Code 1234",
        "Invalid regex pattern",
        "Code 1234",
        R"(Found numbers: ["1234"])",
        "Code 1234",
        "Code 1234",
        R"(Found numbers: ["1234"])",
    };
    if (lines != expected) {
        std::cerr << testing::PrintToString(lines) << std::endl;
    }
    ::_exit(lines == expected ? 0 : 1);
}

TEST(CodeExtraction, PatternIsKeptOnceItCouldBeCompiled)
{
    // In a program started anew, which keeps none yet.
    EXPECT_EXIT(logWithAndWithoutMemory(), testing::ExitedWithCode(0), "");
}

TEST(FindNumbers, InvalidPatternFindsNothingAtAll)
{
    const OutputCapture capture;
    const std::string withoutLastParenthesis = R"((?<!\d)\d{5,6}(?!\d)";
    EXPECT_EQ(findNumbers("123456", withoutLastParenthesis), std::nullopt);
    EXPECT_EQ(findNumbers("123456", "["), std::nullopt);
    EXPECT_EQ(capture.text(), "");
}

TEST(FindNumbers, ValidPatternThatMatchesNothingFindsEmptyList)
{
    EXPECT_THAT(findNumbers("letters", R"(\d+)"), Optional(IsEmpty()));
    EXPECT_THAT(findNumbers("", R"(\d+)"), Optional(IsEmpty()));
}

TEST(FindNumbers, MatchesComeLeftToRightWithoutOverlap)
{
    EXPECT_THAT(findNumbers("12345 67", R"(\d{2})"), Optional(ElementsAre("12", "34", "67")));
}

TEST(FindNumbers, PatternIsCaseSensitiveAndNotAnchored)
{
    EXPECT_THAT(findNumbers("ab AB ab", "ab"), Optional(ElementsAre("ab", "ab")));
    EXPECT_THAT(findNumbers("a\na", "^a"), Optional(ElementsAre("a")));
}

} // namespace

} // namespace orlimo
