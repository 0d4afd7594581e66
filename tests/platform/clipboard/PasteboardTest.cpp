#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "tests/platform/clipboard/PasteboardContents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAreArray;

void putOnPasteboard(std::string_view text)
{
    ClipboardPasteboard pasteboard;
    pasteboard.declareTypes({PasteboardType::string});
    pasteboard.setString(text, PasteboardType::string);
}

class PasteboardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        contents::fill();
        ASSERT_EQ(contents::text(), "old text");
        ASSERT_GT(contents::types().size(), 1U);
    }
};

TEST_F(PasteboardTest, HoldsTheTextAndNothingElse)
{
    putOnPasteboard("123456");
    EXPECT_EQ(contents::text(), "123456");
    EXPECT_THAT(contents::types(), ElementsAreArray(contents::typesOfText()));
}

TEST_F(PasteboardTest, HoldsTheLatestText)
{
    putOnPasteboard("1111");
    putOnPasteboard("2222");
    EXPECT_EQ(contents::text(), "2222");
}

TEST_F(PasteboardTest, TakesTextThatIsNotAscii)
{
    // Eastern Arabic digits, a letter with a combining mark, and one beyond the basic plane.
    const auto text = "\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"sv;
    putOnPasteboard(text);
    EXPECT_EQ(contents::text(), text);
}

TEST_F(PasteboardTest, TakesANulForACharacterLikeAnyOther)
{
    putOnPasteboard("12\0 34"sv);
    EXPECT_EQ(contents::text(), "12\0 34"sv);
}

TEST_F(PasteboardTest, TakesAnEmptyText)
{
    putOnPasteboard("");
    EXPECT_EQ(contents::text(), "");
    EXPECT_THAT(contents::types(), ElementsAreArray(contents::typesOfText()));
}

TEST_F(PasteboardTest, TakesNoMoreThanItIsGiven)
{
    const std::string message = "Your code is 123456.";
    putOnPasteboard(std::string_view(message).substr(13, 6));
    EXPECT_EQ(contents::text(), "123456");
}

} // namespace
} // namespace orlimo
