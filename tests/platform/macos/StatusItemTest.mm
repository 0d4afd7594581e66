#include "platform/macos/StatusItem.h"

#include "resources/ImageIcon.h"
#include "tests/platform/macos/standins/ScriptedStatusBarButton.h"
#include "tests/support/QtPrinting.h"

#include <gtest/gtest.h>

#include <memory>

namespace orlimo {
namespace {

class StatusItemTest : public testing::Test
{
protected:
    StatusItemTest()
    {
        scriptedAppKit() = {};
        scriptedAppKit().screens = {
            NSMakeRect(0, 0, 1440, 900), NSMakeRect(-1920, 200, 1920, 1080)};
        item = std::make_unique<StatusItem>(
            templateIcon(QStringLiteral("StatusBarIcon")), [this] { ++presses; });
    }

    [[nodiscard]] static ScriptedStatusBarButton* button()
    {
        return static_cast<ScriptedStatusBarButton*>([scriptedAppKit().statusItems.at(0) button]);
    }

    int presses = 0;
    std::unique_ptr<StatusItem> item;
};

TEST_F(StatusItemTest, IsInTheMenuBarForAsLongAsItLives)
{
    EXPECT_EQ(scriptedAppKit().statusItems.size(), 1U);
    item.reset();
    EXPECT_TRUE(scriptedAppKit().statusItems.empty());
}

TEST_F(StatusItemTest, SaysWhoseItIs)
{
    EXPECT_STREQ([[button() toolTip] UTF8String], "Orlimo");
    EXPECT_STREQ([[button() accessibilityLabel] UTF8String], "Orlimo");
    EXPECT_TRUE([[button() image] isTemplate]);
    EXPECT_TRUE(NSEqualSizes([[button() image] size], NSMakeSize(16, 16)));
}

TEST_F(StatusItemTest, IsPressedByEitherButtonOfTheMouseAsItGoesDown)
{
    [button() receive:NSLeftMouseDown];
    EXPECT_EQ(presses, 1);
    [button() receive:NSLeftMouseUp];
    EXPECT_EQ(presses, 1);
    [button() receive:NSRightMouseDown];
    EXPECT_EQ(presses, 2);
    [button() receive:NSRightMouseUp];
    [button() receive:NSLeftMouseDragged];
    EXPECT_EQ(presses, 2);
}

TEST_F(StatusItemTest, IsPressedByAnAidToAccessibility)
{
    // There is no event of the mouse then, and no current event at all.
    [button() press];
    EXPECT_EQ(presses, 1);
}

TEST_F(StatusItemTest, IsNowhereUntilTheMenuBarHasPlacedIt)
{
    EXPECT_EQ(item->geometry(), std::nullopt);
}

TEST_F(StatusItemTest, IsWhereItsButtonIs)
{
    scriptedAppKit().statusItemWindow = NSMakeRect(1000, 876, 24, 24);
    EXPECT_EQ(item->geometry(), QRect(1001, 1, 22, 22));
}

TEST_F(StatusItemTest, IsOnTheScreenOnWhichItWasPressed)
{
    // Its menu bar ends at 1280 points above the primary screen's lower edge.
    scriptedAppKit().statusItemWindow = NSMakeRect(-100, 1256, 24, 24);
    EXPECT_EQ(item->geometry(), QRect(-99, -379, 22, 22));
}

TEST_F(StatusItemTest, SaysWhetherTheUserHasTakenItOut)
{
    EXPECT_TRUE(item->isVisible());
    scriptedAppKit().statusItemsAreVisible = false;
    EXPECT_FALSE(item->isVisible());
}

TEST_F(StatusItemTest, ShowsWhetherItsWindowIsOpen)
{
    item->highlight(true);
    EXPECT_TRUE([button() isHighlighted]);
    item->highlight(false);
    EXPECT_FALSE([button() isHighlighted]);
}

} // namespace
} // namespace orlimo
