#include "platform/preferences/linux/SettingsValue.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

TEST(BooleanValue, OnlyYesTrueOrNumberButZeroIsTrue)
{
    const std::vector<std::pair<bool, std::vector<std::string_view>>> cases{
        {true, {"y", "Y", "yes", "YES", "yonder", "t", "T", "true", "TRUE", "1", "9", "12 months"}},
        {true, {"007", "10", "+1", "-1", "-0.5", "+.5", "0.05", "00.0001", "1e-400", "3,5", "5x"}},
        {true, {"99999999999999999999999999", " yes", " \t\r\n\v\f1"}},
        {false, {"", " ", "\t\n", "n", "no", "false", "on", "enabled", "ja", "\0yes"sv, "   no"}},
        {false, {"0", "00", "-0", "+0", "0.0", ".0", "0x1", "0 1", "0, 1", "0e5", "0.0.1", "..5"}},
        {false, {"+", "-", ".", "+-1", "- 1", "+y", "e1", "#1", "\xD9\xA1", "\xEF\xBC\x91"}},
        {false, {"\xC2\xA0\x31", "\xFF"}}};
    for (const auto& [value, texts] : cases) {
        for (const auto text : texts) {
            EXPECT_EQ(booleanValue(text), value) << text;
        }
    }
}

TEST(StoredString, UndoesQuotesAndEscapesOfQSettings)
{
    struct Case
    {
        std::string_view stored;
        std::optional<std::string> string;
    };
    for (const auto& [stored, string] : {
             Case{"", ""},
             Case{"true", "true"},
             Case{"two words", "two words"},
             Case{R"("")", ""},
             Case{R"(" 1")", " 1"},
             Case{R"("a, b; c")", "a, b; c"},
             Case{R"("say \"no\" \\ ")", R"(say "no" \ )"},
             Case{R"(\tyes)", "\tyes"},
             Case{R"(\a\b\f\n\r\v)", "\a\b\f\n\r\v"},
             Case{R"(\x79\x65s)", "yes"},
             Case{R"(\0)", std::string(1, '\0')},
             Case{R"(a\)", R"(a\)"},
             Case{"yes ; a comment", "yes "},
             Case{"yes, no", std::nullopt},
             Case{"@Invalid()", std::nullopt},
             Case{"@ByteArray(yes)", std::nullopt},
             Case{R"(@Variant(\0\0\0\x1\x1))", std::nullopt},
         })
    {
        EXPECT_EQ(storedString(stored), string) << stored;
    }
}

} // namespace
} // namespace orlimo
