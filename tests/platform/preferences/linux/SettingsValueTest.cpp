#include "platform/preferences/linux/SettingsValue.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

TEST(BooleanValue, YesTrueOrNumberButZeroIsTrue)
{
    for (const auto text : {"y"sv,      "Y"sv,           "yes"sv,  "YES"sv,
                            "yonder"sv, "t"sv,           "T"sv,    "true"sv,
                            "TRUE"sv,   "1"sv,           "9"sv,    "12 months"sv,
                            "007"sv,    "10"sv,          "+1"sv,   "-1"sv,
                            "-0.5"sv,   "+.5"sv,         "0.05"sv, "00.0001"sv,
                            "1e-400"sv, "3,5"sv,         "5x"sv,   "99999999999999999999999999"sv,
                            " yes"sv,   " \t\r\n\v\f1"sv})
    {
        EXPECT_TRUE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, AnythingElseIsFalse)
{
    for (const auto text :
         {""sv,
          " "sv,
          "\t\n"sv,
          "n"sv,
          "no"sv,
          "false"sv,
          "on"sv,
          "enabled"sv,
          "ja"sv,
          "\0yes"sv,
          "0"sv,
          "00"sv,
          "-0"sv,
          "+0"sv,
          "0.0"sv,
          ".0"sv,
          "0x1"sv,
          "0 1"sv,
          "0, 1"sv,
          "0e5"sv,
          "+"sv,
          "-"sv,
          "."sv,
          "+-1"sv,
          "- 1"sv,
          "+y"sv,
          "..5"sv,
          "0.0.1"sv,
          "e1"sv,
          "#1"sv,
          "\xD9\xA1"sv,
          "\xEF\xBC\x91"sv,
          "\xC2\xA0"
          "1"sv,
          "   no"sv,
          "\xFF"sv})
    {
        EXPECT_FALSE(booleanValue(text)) << text;
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
