#include "capture/Unicode.h"

#include "tests/capture/reference/ReferenceUnicode.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;

TEST(Unicode, MaximalIllFormedPartsAreReplacedAndNothingElse)
{
    // A question mark for each U+FFFD. The first four are examples of the Unicode standard.
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", "????????A"},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", "????????A"},
        {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", "?????A??B"},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", "????A"},
        {"\xE2\x82\xE2\x82\xACz\xF0\x9F\x98", "?\xE2\x82\xACz?"},
        {"\xF8\x88\x80\x80\x80", "?????"},
        {"", ""},
        {"\0nul\0"s, "\0nul\0"s},
        {"\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF",
         "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"},
    };
    for (const auto& [bytes, repaired] : cases) {
        EXPECT_EQ(isWellFormedUtf8(bytes), bytes == repaired);
        std::string expected;
        for (const char character : repaired) {
            expected += character == '?' ? "\uFFFD"s : std::string(1, character);
        }
        EXPECT_EQ(repairedUtf8(bytes), expected);
    }
}

/// Every text of up to three, in the long run four, of the bytes at which the rules of UTF-8
/// change.
TEST(Unicode, AgreesWithTableOfWellFormedSequences)
{
    const std::string edges = "\x00\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED"
                              "\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF"s;
    std::vector<std::string> texts{""};
    for (std::size_t next = 0; next < texts.size(); ++next) {
        const std::string text = texts[next];
        ASSERT_EQ(isWellFormedUtf8(text), isReferenceWellFormed(text))
            << testing::PrintToString(text);
        ASSERT_EQ(repairedUtf8(text), referenceRepaired(text)) << testing::PrintToString(text);
#if defined(ORLIMO_LONG_RUN) && !defined(ORLIMO_SANITIZED)
        constexpr std::size_t longest = 4;
#else
        constexpr std::size_t longest = 3;
#endif
        if (text.size() < longest) {
            for (const char byte : edges) {
                texts.push_back(text + byte);
            }
        }
    }
}

} // namespace

} // namespace orlimo
