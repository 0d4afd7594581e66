#include "platform/preferences/linux/BooleanValue.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

TEST(BooleanValue, IsTrueForWordsThatBeginWithYOrT)
{
    for (const auto text :
         {"Y"sv,
          "y"sv,
          "T"sv,
          "t"sv,
          "YES"sv,
          "Yes"sv,
          "yes"sv,
          "TRUE"sv,
          "true"sv,
          "tomato"sv,
          "y0"sv,
          "T-"sv,
          "t\0"sv})
    {
        EXPECT_TRUE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, IsFalseForEveryOtherWord)
{
    for (const auto text :
         {"N"sv,
          "NO"sv,
          "no"sv,
          "F"sv,
          "false"sv,
          "FALSE"sv,
          "on"sv,
          "enabled"sv,
          "x1"sv,
          "ayes"sv,
          "@Invalid()"sv,
          R"("true")"sv,
          "-yes"sv,
          "+t"sv,
          "e5"sv,
          "inf"sv,
          "nan"sv})
    {
        EXPECT_FALSE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, IsTrueForEveryNumberButZero)
{
    for (const auto text :
         {"1"sv,
          "2"sv,
          "9"sv,
          "10"sv,
          "42"sv,
          "-1"sv,
          "+1"sv,
          "01"sv,
          "000001"sv,
          "-0003"sv,
          "1.0"sv,
          "0.5"sv,
          "-0.25"sv,
          "0.0001"sv,
          "1e0"sv,
          "5 apples"sv,
          "1no"sv,
          "99999999999999999999999999999999999999999999"sv})
    {
        EXPECT_TRUE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, IsFalseForZeroHoweverItIsWritten)
{
    for (const auto text :
         {"0"sv,
          "00"sv,
          "-0"sv,
          "+0"sv,
          "0.0"sv,
          "0."sv,
          "-0.000"sv,
          "0e9"sv,
          "0x10"sv,
          "0 1"sv,
          "0,5"sv,
          "0yes"sv,
          "0.-1"sv,
          "0..1"sv})
    {
        EXPECT_FALSE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, PassesOverWhiteSpaceAtTheBeginning)
{
    EXPECT_TRUE(booleanValue(" yes"));
    EXPECT_TRUE(booleanValue(" \t\r\n\v\f1"));
    EXPECT_FALSE(booleanValue("   no"));
    EXPECT_FALSE(booleanValue(" 0"));
}

TEST(BooleanValue, IsFalseForNothing)
{
    EXPECT_FALSE(booleanValue(""));
    EXPECT_FALSE(booleanValue(" "));
    EXPECT_FALSE(booleanValue("\t\n"));
    EXPECT_FALSE(booleanValue("\0yes"sv));
}

TEST(BooleanValue, IsFalseForWhatOnlyResemblesANumber)
{
    for (const auto text :
         {"+"sv,
          "-"sv,
          "."sv,
          "--1"sv,
          "++1"sv,
          "+-1"sv,
          "- 1"sv,
          "#1"sv,
          "(1)"sv,
          "\xEF\xBC\x91"sv /* full-width one */,
          "\xD9\xA1"sv /* Arabic-Indic one */,
          "\xC2\xA0yes"sv /* after a no-break space */})
    {
        EXPECT_FALSE(booleanValue(text)) << text;
    }
}

} // namespace
} // namespace orlimo
