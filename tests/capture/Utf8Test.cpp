#include "capture/Utf8.h"

#include "tests/capture/reference/ReferenceUtf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;

/// `text` with a U+FFFD for each question mark.
std::string withReplacements(std::string_view text)
{
    std::string replaced;
    for (const char character : text) {
        replaced += character == '?' ? "\uFFFD"s : std::string(1, character);
    }
    return replaced;
}

struct BytesCase
{
    std::string name;
    std::string bytes;
    /// The repaired text, with a question mark for each U+FFFD.
    std::string repaired;
};

void PrintTo(const BytesCase& bytesCase, std::ostream* stream)
{
    *stream << bytesCase.name;
}

class IllFormedUtf8 : public testing::TestWithParam<BytesCase>
{};

TEST_P(IllFormedUtf8, IsRecognised)
{
    EXPECT_FALSE(isWellFormedUtf8(GetParam().bytes));
}

TEST_P(IllFormedUtf8, HasOneReplacementForEachMaximalPart)
{
    EXPECT_EQ(repairedUtf8(GetParam().bytes), withReplacements(GetParam().repaired));
}

INSTANTIATE_TEST_SUITE_P(
    Sequences,
    IllFormedUtf8,
    testing::Values(
        BytesCase{"LoneFollowingByte", "a\x80z", "a?z"},
        BytesCase{"TwoFollowingBytes", "a\x80\xBFz", "a??z"},
        BytesCase{"LoneFirstOfTwo", "a\xC3z", "a?z"},
        BytesCase{"LoneFirstOfThree", "a\xE2z", "a?z"},
        BytesCase{"TwoOfThree", "a\xE2\x82z", "a?z"},
        BytesCase{"TwoOfThreeAtEnd", "a\xE2\x82", "a?"},
        BytesCase{"ThreeOfFour", "a\xF0\x9F\x98z", "a?z"},
        BytesCase{"ThreeOfFourAtEnd", "a\xF0\x9F\x98", "a?"},
        BytesCase{"OverlongOfTwo", "a\xC0\xAFz", "a??z"},
        BytesCase{"OverlongOfThree", "a\xE0\x80\xAFz", "a???z"},
        BytesCase{"OverlongOfFour", "a\xF0\x80\x80\xAFz", "a????z"},
        BytesCase{"OverlongNul", "\xC0\x80", "??"},
        BytesCase{"HighSurrogate", "a\xED\xA0\x80z", "a???z"},
        BytesCase{"LowSurrogate", "a\xED\xBF\xBFz", "a???z"},
        BytesCase{"SurrogatePair", "a\xED\xA0\xBD\xED\xB8\x80z", "a??????z"},
        BytesCase{"FirstBeyondLastCodePoint", "a\xF4\x90\x80\x80z", "a????z"},
        BytesCase{"BytesThatNeverOccur", "\xFE\xFF\xF5\xC1", "????"},
        BytesCase{"FiveByteForm", "\xF8\x88\x80\x80\x80", "?????"},
        BytesCase{"CutSequenceBeforeWholeOne", "\xE2\x82\xE2\x82\xAC", "?\xE2\x82\xAC"},
        // The three examples of the Unicode standard.
        BytesCase{"StandardsOverlongForms", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", "????????A"},
        BytesCase{"StandardsSurrogates", "\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", "????????A"},
        BytesCase{"StandardsOthers", "\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", "?????A??B"},
        BytesCase{"StandardsCutSequences", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", "????A"}),
    [](const auto& given) { return given.param.name; });

TEST(WellFormedUtf8, StaysAsItIs)
{
    const std::vector<std::string> texts{
        "",
        "plain",
        "\0nul\0"s,
        "\u0080\u07FF\u0800\uD7FF\uE000\uFFFD\uFFFF\U00010000\U0010FFFF",
        "grüße €5 😀",
    };
    for (const std::string& text : texts) {
        EXPECT_TRUE(isWellFormedUtf8(text)) << text;
        EXPECT_EQ(repairedUtf8(text), text);
    }
}

/// Every text of up to four of the bytes at which the rules for UTF-8 change.
TEST(Utf8, AgreesWithTableOfWellFormedSequences)
{
    const std::string edges = "\x00\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED"
                              "\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF"s;
    std::vector<std::string> texts{""};
    for (std::size_t next = 0; next < texts.size(); ++next) {
        const std::string text = texts[next];
        ASSERT_EQ(isWellFormedUtf8(text), isReferenceWellFormed(text))
            << testing::PrintToString(text);
        ASSERT_EQ(repairedUtf8(text), referenceRepaired(text)) << testing::PrintToString(text);
#if defined(ORLIMO_SANITIZED)
        constexpr std::size_t longest = 3;
#else
        constexpr std::size_t longest = 4;
#endif
        if (text.size() < longest) {
            for (const char byte : edges) {
                texts.push_back(text + byte);
            }
        }
    }
}

TEST(Utf8, EveryCodePointIsWellFormed)
{
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        ASSERT_EQ(isWellFormedUtf8(referenceUtf8(codePoint)), !isSurrogate)
            << static_cast<std::uint32_t>(codePoint);
    }
}

} // namespace

} // namespace orlimo
