#include "platform/menubar/WindowPlacement.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <vector>

namespace orlimo {

// For the messages of failed expectations.
void PrintTo(const QPoint& point, std::ostream* stream)
{
    *stream << "(" << point.x() << ", " << point.y() << ")";
}

namespace {

constexpr QSize window(300, 540);
constexpr QRect frame(0, 0, 1280, 800);

/// A screen whose panel of 24 points takes a strip of one edge away.
ScreenArea withTopPanel(QRect whole = frame)
{
    return {whole, whole.adjusted(0, 24, 0, 0)};
}

ScreenArea withBottomPanel(QRect whole = frame)
{
    return {whole, whole.adjusted(0, 0, 0, -24)};
}

ScreenArea withLeftPanel(QRect whole = frame)
{
    return {whole, whole.adjusted(24, 0, 0, 0)};
}

ScreenArea withRightPanel(QRect whole = frame)
{
    return {whole, whole.adjusted(0, 0, -24, 0)};
}

/// A screen that says nothing of its panels.
ScreenArea withoutKnownPanel(QRect whole = frame)
{
    return {whole, whole};
}

/// An icon of the usual size with its top left corner there.
QRect iconAt(int x, int y)
{
    return {x, y, 22, 22};
}

QPoint placed(const QRect& anchor, const ScreenArea& screen, QSize size = window)
{
    return windowPlacement(anchor, size, {screen});
}

TEST(WindowPlacement, IsCentredUnderAnIconInATopPanel)
{
    // The icon's middle is at 611, the window's at 461 + 150.
    EXPECT_EQ(placed(iconAt(600, 1), withTopPanel()), QPoint(461, 24));
    EXPECT_EQ(placed(iconAt(600, 1), withoutKnownPanel()), QPoint(461, 23));
}

TEST(WindowPlacement, IsCentredAboveAnIconInABottomPanel)
{
    EXPECT_EQ(placed(iconAt(600, 777), withBottomPanel()), QPoint(461, 776 - 540));
    EXPECT_EQ(placed(iconAt(600, 777), withoutKnownPanel()), QPoint(461, 777 - 540));
}

TEST(WindowPlacement, IsCentredBesideAnIconInALeftPanel)
{
    EXPECT_EQ(placed(iconAt(1, 400), withLeftPanel()), QPoint(24, 411 - 270));
    EXPECT_EQ(placed(iconAt(1, 400), withoutKnownPanel()), QPoint(23, 411 - 270));
}

TEST(WindowPlacement, IsCentredBesideAnIconInARightPanel)
{
    EXPECT_EQ(placed(iconAt(1257, 400), withRightPanel()), QPoint(1256 - 300, 411 - 270));
    EXPECT_EQ(placed(iconAt(1257, 400), withoutKnownPanel()), QPoint(1257 - 300, 411 - 270));
}

TEST(WindowPlacement, TakesAnIconForOneInASidePanelWhereNoOtherFitsBetween)
{
    EXPECT_EQ(placed(iconAt(21, 100), withoutKnownPanel()), QPoint(43, 0));
    EXPECT_EQ(placed(iconAt(22, 100), withoutKnownPanel()), QPoint(0, 122));
    EXPECT_EQ(placed(iconAt(1237, 100), withoutKnownPanel()), QPoint(937, 0));
    EXPECT_EQ(placed(iconAt(1236, 100), withoutKnownPanel()), QPoint(980, 122));
}

TEST(WindowPlacement, StaysOnTheScreenAtTheEndsOfATopPanel)
{
    for (const auto& screen : {withTopPanel(), withoutKnownPanel()}) {
        const int top = screen.available.y() + (screen.available.y() == 0 ? 23 : 0);
        EXPECT_EQ(placed(iconAt(0, 1), screen), QPoint(0, top));
        EXPECT_EQ(placed(iconAt(1258, 1), screen), QPoint(980, top));
    }
}

TEST(WindowPlacement, StaysOnTheScreenAtTheEndsOfABottomPanel)
{
    EXPECT_EQ(placed(iconAt(0, 777), withBottomPanel()), QPoint(0, 236));
    EXPECT_EQ(placed(iconAt(1258, 777), withBottomPanel()), QPoint(980, 236));
    EXPECT_EQ(placed(iconAt(0, 777), withoutKnownPanel()), QPoint(0, 237));
    EXPECT_EQ(placed(iconAt(1258, 777), withoutKnownPanel()), QPoint(980, 237));
}

TEST(WindowPlacement, StaysBesideThePanelAtTheEndsOfALeftPanel)
{
    EXPECT_EQ(placed(iconAt(1, 0), withLeftPanel()), QPoint(24, 0));
    EXPECT_EQ(placed(iconAt(1, 778), withLeftPanel()), QPoint(24, 260));
}

TEST(WindowPlacement, StaysBesideThePanelAtTheEndsOfARightPanel)
{
    EXPECT_EQ(placed(iconAt(1257, 0), withRightPanel()), QPoint(956, 0));
    EXPECT_EQ(placed(iconAt(1257, 778), withRightPanel()), QPoint(956, 260));
}

TEST(WindowPlacement, IsUnderAnIconInTheMiddleOfTheScreen)
{
    EXPECT_EQ(placed(iconAt(600, 100), withoutKnownPanel()), QPoint(461, 122));
    EXPECT_EQ(placed(iconAt(600, 100), withBottomPanel()), QPoint(461, 122));
}

TEST(WindowPlacement, IsAboveOnlyWhereThereIsNoRoomBelow)
{
    // The icon ends at 260: 540 points fit below it to the last one.
    EXPECT_EQ(placed(iconAt(600, 238), withoutKnownPanel()), QPoint(461, 260));
    // One more and they do not; above there is no room either, and inside goes before all.
    EXPECT_EQ(placed(iconAt(600, 239), withoutKnownPanel()), QPoint(461, 0));
    EXPECT_EQ(placed(iconAt(600, 600), withoutKnownPanel()), QPoint(461, 60));
}

TEST(WindowPlacement, IsAtAClick)
{
    const QSize point(1, 1);
    EXPECT_EQ(placed({QPoint(640, 10), point}, withTopPanel()), QPoint(490, 24));
    EXPECT_EQ(placed({QPoint(640, 790), point}, withBottomPanel()), QPoint(490, 236));
    EXPECT_EQ(placed({QPoint(10, 400), point}, withLeftPanel()), QPoint(24, 130));
    EXPECT_EQ(placed({QPoint(1270, 400), point}, withRightPanel()), QPoint(956, 130));
    EXPECT_EQ(placed({QPoint(1279, 799), point}, withBottomPanel()), QPoint(980, 236));
}

TEST(WindowPlacement, IsBelowATopPanelThatGrowsLargerThanItsIcon)
{
    const ScreenArea thick{frame, frame.adjusted(0, 60, 0, 0)};
    EXPECT_EQ(placed(iconAt(600, 5), thick), QPoint(461, 60));
}

TEST(WindowPlacement, MindsPanelsOnOtherEdges)
{
    // A dock on the right; the icon in a panel at the top.
    const ScreenArea screen{frame, frame.adjusted(0, 24, -80, 0)};
    EXPECT_EQ(placed(iconAt(1170, 1), screen), QPoint(900, 24));
    // The icon is above the dock, outside of the free area in both directions.
    EXPECT_EQ(placed(iconAt(1257, 1), screen), QPoint(900, 24));
}

TEST(WindowPlacement, IsOnTheScreenThatHoldsTheIcon)
{
    const std::vector<ScreenArea> screens{
        withTopPanel(frame),
        withTopPanel({1280, 0, 1920, 1080}),
        withTopPanel({0, 800, 1280, 800}),
    };
    EXPECT_EQ(windowPlacement(iconAt(1258, 1), window, screens), QPoint(980, 24));
    EXPECT_EQ(windowPlacement(iconAt(1280, 1), window, screens), QPoint(1280, 24));
    EXPECT_EQ(windowPlacement(iconAt(3178, 1), window, screens), QPoint(2900, 24));
    EXPECT_EQ(windowPlacement(iconAt(600, 801), window, screens), QPoint(461, 824));
}

TEST(WindowPlacement, DoesNotDependOnTheOrderOfTheScreens)
{
    const std::vector<ScreenArea> screens{withTopPanel({1280, 0, 1920, 1080}), withTopPanel()};
    EXPECT_EQ(windowPlacement(iconAt(600, 1), window, screens), QPoint(461, 24));
}

TEST(WindowPlacement, TakesScreensLeftOfAndAboveTheOrigin)
{
    const std::vector<ScreenArea> screens{
        withBottomPanel(frame),
        withBottomPanel({-1920, -200, 1920, 1080}),
        withLeftPanel({0, -1024, 1280, 1024}),
    };
    // The left screen's panel reaches from 856 to 880.
    EXPECT_EQ(windowPlacement(iconAt(-1920, 857), window, screens), QPoint(-1920, 856 - 540));
    EXPECT_EQ(windowPlacement(iconAt(-1000, 857), window, screens), QPoint(-1139, 856 - 540));
    EXPECT_EQ(windowPlacement(iconAt(-22, 857), window, screens), QPoint(-300, 856 - 540));
    EXPECT_EQ(windowPlacement(iconAt(1, -500), window, screens), QPoint(24, -489 - 270));
    EXPECT_EQ(windowPlacement(iconAt(1, -23), window, screens), QPoint(24, -540));
}

TEST(WindowPlacement, IsOnTheNearestScreenForAnIconOnNone)
{
    const std::vector<ScreenArea> screens{withTopPanel(), withTopPanel({2000, 0, 1280, 800})};
    EXPECT_EQ(windowPlacement(iconAt(1300, 1), window, screens), QPoint(980, 24));
    EXPECT_EQ(windowPlacement(iconAt(1900, 1), window, screens), QPoint(2000, 24));
    EXPECT_EQ(windowPlacement(iconAt(-500, -500), window, screens), QPoint(0, 24));
}

TEST(WindowPlacement, ShowsTheTopLeftOfAWindowThatIsLargerThanTheScreen)
{
    const ScreenArea small = withTopPanel({100, 50, 200, 300});
    EXPECT_EQ(placed(iconAt(250, 51), small), QPoint(100, 74));
    EXPECT_EQ(placed(iconAt(150, 320), withBottomPanel({100, 50, 200, 300})), QPoint(100, 50));
    EXPECT_EQ(placed(iconAt(101, 200), withLeftPanel({100, 50, 200, 300})), QPoint(124, 50));
    // Only one direction is too small.
    EXPECT_EQ(placed(iconAt(600, 1), withTopPanel({0, 0, 1280, 300})), QPoint(461, 24));
}

TEST(WindowPlacement, IsAlwaysInsideTheAvailableArea)
{
    const std::vector<QRect> frames{frame, {-1920, -300, 1920, 1080}, {100, 100, 300, 540}};
    for (const QRect& whole : frames) {
        for (const auto& screen :
             {withTopPanel(whole),
              withBottomPanel(whole),
              withLeftPanel(whole),
              withRightPanel(whole),
              withoutKnownPanel(whole)})
        {
            for (int x = whole.left() - 50; x <= whole.right() + 50; x += 7) {
                for (int y = whole.top() - 50; y <= whole.bottom() + 50; y += 7) {
                    const QSize size(200, 300);
                    const QRect rectangle(placed(iconAt(x, y), screen, size), size);
                    ASSERT_TRUE(screen.available.contains(rectangle)) << x << " " << y;
                }
            }
        }
    }
}

TEST(WindowPlacement, NeverCoversAnIconThatLeavesRoom)
{
    for (const auto& screen :
         {withTopPanel(),
          withBottomPanel(),
          withLeftPanel(),
          withRightPanel(),
          withoutKnownPanel()})
    {
        for (int x = 0; x <= frame.width() - 22; x += 3) {
            for (int y : {0, 1, 30, 100, 200, 572, 700, 777, 778}) {
                const QRect icon = iconAt(x, y);
                const QRect rectangle(placed(icon, screen), window);
                ASSERT_FALSE(rectangle.intersects(icon)) << x << " " << y;
            }
        }
    }
}

} // namespace
} // namespace orlimo
