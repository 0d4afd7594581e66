#include "platform/loginitem/linux/DesktopEntry.h"

#include <gtest/gtest.h>

#include <string>

namespace orlimo::desktopEntry {
namespace {

TEST(DesktopEntryString, EscapesWhatALineCannotHold)
{
    EXPECT_EQ(stringValue(""), "");
    EXPECT_EQ(stringValue("/usr/bin/orlimo"), "/usr/bin/orlimo");
    EXPECT_EQ(stringValue("a\nb\tc\rd\\e"), R"(a\nb\tc\rd\\e)");
    EXPECT_EQ(stringValue(R"(\n)"), R"(\\n)");
    EXPECT_EQ(stringValue("\"`$%;=#[]'"), "\"`$%;=#[]'");
    EXPECT_EQ(stringValue("Größe 鍵"), "Größe 鍵");
}

TEST(DesktopEntryString, KeepsBlanksAtItsEnds)
{
    EXPECT_EQ(stringValue(" a b "), R"(\sa b\s)");
    EXPECT_EQ(stringValue("  "), R"(\s\s)");
    EXPECT_EQ(stringValue(" "), R"(\s)");
}

TEST(DesktopEntryExec, QuotesTheArgument)
{
    EXPECT_EQ(execArgument(""), R"("")");
    EXPECT_EQ(execArgument("/usr/bin/orlimo"), R"("/usr/bin/orlimo")");
    EXPECT_EQ(execArgument("/a b/it's;&|<>*?#()~"), R"("/a b/it's;&|<>*?#()~")");
    EXPECT_EQ(execArgument(" a "), R"(" a ")");
}

TEST(DesktopEntryExec, EscapesForQuotesAndThenForStrings)
{
    EXPECT_EQ(execArgument("\""), R"("\\"")");
    EXPECT_EQ(execArgument("`"), R"("\\`")");
    EXPECT_EQ(execArgument("$HOME"), R"("\\$HOME")");
    EXPECT_EQ(execArgument("\\"), R"("\\\\")");
    EXPECT_EQ(execArgument("%f"), R"("%%f")");
    EXPECT_EQ(execArgument("a\nb"), R"("a\nb")");
}

TEST(DesktopEntryValue, IsAbsentWhereTheKeyIs)
{
    EXPECT_EQ(lastValue("", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidde=true\nHidden2=true\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\nhidden=true\nHidden\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden[de]=true\n", "Hidden"), std::nullopt);
}

TEST(DesktopEntryValue, IsWhatStandsBehindTheFirstEqualsSign)
{
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=true\n", "Hidden"), "true");
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=true", "Hidden"), "true");
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=\n", "Hidden"), "");
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=a=b\n", "Hidden"), "a=b");
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=\\strue\n", "Hidden"), "\\strue");
}

TEST(DesktopEntryValue, BlanksAroundItAndForeignLineEndsDoNotCount)
{
    EXPECT_EQ(lastValue("[Desktop Entry]\n  Hidden \t=  true \t\n", "Hidden"), "true");
    EXPECT_EQ(lastValue("[Desktop Entry]\r\nHidden=true\r\n", "Hidden"), "true");
    EXPECT_EQ(lastValue(" [Desktop Entry] \nHidden=a b\n", "Hidden"), "a b");
}

TEST(DesktopEntryValue, IsTheLastOne)
{
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=true\nHidden=false\n", "Hidden"), "false");
    EXPECT_EQ(lastValue("[Desktop Entry]\nHidden=false\n\n#\nHidden=true\n", "Hidden"), "true");
    EXPECT_EQ(
        lastValue("[Desktop Entry]\nHidden=1\n[Other]\n[Desktop Entry]\nHidden=2\n", "Hidden"),
        "2");
}

TEST(DesktopEntryValue, OfOtherGroupsAndInCommentsDoesNotCount)
{
    EXPECT_EQ(lastValue("Hidden=true\n[Desktop Entry]\n", "Hidden"), std::nullopt);
    EXPECT_EQ(
        lastValue("[Desktop Entry]\n[Desktop Action New]\nHidden=true\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\n#Hidden=true\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry]\n # Hidden=true\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[desktop entry]\nHidden=true\n", "Hidden"), std::nullopt);
    EXPECT_EQ(lastValue("[Desktop Entry 2]\nHidden=true\n", "Hidden"), std::nullopt);
}

TEST(DesktopEntryValue, IsReadFromAnyBytes)
{
    constexpr char bytes[] = "\0\xFF\n=\n[\n]\n[Desktop Entry]\n\0=\n\xFE\nHidden=true\xFD";
    EXPECT_EQ(lastValue({bytes, sizeof bytes - 1}, "Hidden"), "true\xFD");
}

} // namespace
} // namespace orlimo::desktopEntry
