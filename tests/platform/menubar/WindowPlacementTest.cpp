#include "platform/menubar/WindowPlacement.h"

#include "tests/support/widgets/QtPrinting.h"

#include <gtest/gtest.h>

#include <vector>

namespace orlimo {

namespace {

constexpr QSize window(300, 540);
constexpr QRect frame(0, 0, 1280, 800);
constexpr QSize iconSize(22, 22);
constexpr QSize click(1, 1);

/// A screen whose panels cover that many points of its left, top, right and bottom edge.
ScreenArea withPanels(QMargins panels, const QRect& whole = frame)
{
    return {whole, whole.marginsRemoved(panels)};
}

constexpr QMargins left(24, 0, 0, 0);
constexpr QMargins top(0, 24, 0, 0);
constexpr QMargins right(0, 0, 24, 0);
constexpr QMargins bottom(0, 0, 0, 24);
constexpr QMargins unknown(0, 0, 0, 0);

/// An icon or a click on a screen of 1280 by 800 points, and the window's expected position.
struct Placement
{
    QMargins panels;
    QPoint anchor;
    QPoint expected;
    QSize anchorSize = iconSize;
};

TEST(WindowPlacement, BelongsToTheIconOnItsPanel)
{
    for (const Placement& placement : std::vector<Placement>{
             // Centred below, above or beside: the icon's middle is at 611, the window's at 461 +
             // 150.
             {top, {600, 1}, {461, 24}},
             {unknown, {600, 1}, {461, 23}},
             {bottom, {600, 777}, {461, 776 - 540}},
             {left, {1, 400}, {24, 411 - 270}},
             {unknown, {1, 400}, {23, 411 - 270}},
             {right, {1257, 400}, {1256 - 300, 411 - 270}},
             // A side panel is assumed if no second icon fits between icon and edge.
             {unknown, {21, 100}, {43, 0}},
             {unknown, {22, 100}, {0, 122}},
             {unknown, {1237, 100}, {937, 0}},
             {unknown, {1236, 100}, {980, 122}},
             // At the ends of the panels.
             {top, {0, 1}, {0, 24}},
             {top, {1258, 1}, {980, 24}},
             {unknown, {0, 1}, {0, 23}},
             {left, {1, 0}, {24, 0}},
             {left, {1, 778}, {24, 260}},
             // In the middle: above only if there is not enough space below.
             {unknown, {600, 100}, {461, 122}},
             {unknown, {600, 238}, {461, 260}},
             {unknown, {600, 239}, {461, 0}},
             // A thick panel, and one with a dock at the right, below the icon.
             {{0, 60, 0, 0}, {600, 5}, {461, 60}},
             {{0, 24, 80, 0}, {1170, 1}, {900, 24}},
             // Clicks.
             {top, {640, 10}, {490, 24}, click},
             {bottom, {1279, 799}, {980, 236}, click}})
    {
        const QRect anchor(placement.anchor, placement.anchorSize);
        EXPECT_EQ(
            windowPlacement(anchor, window, {withPanels(placement.panels)}), placement.expected)
            << anchor.x() << ", " << anchor.y();
    }
}

TEST(WindowPlacement, IsOnTheScreenOfTheIconOrTheNearest)
{
    const std::vector<ScreenArea> screens{
        withPanels(top, {1280, 0, 1920, 1080}),
        withPanels(top),
        withPanels(top, {0, 800, 1280, 800}),
        withPanels(bottom, {-1920, -200, 1920, 1080}),
        withPanels(left, {0, -1024, 1280, 1024}),
    };
    for (const auto& [icon, expected] : std::vector<std::pair<QPoint, QPoint>>{
             {{600, 1}, {461, 24}},
             {{600, 801}, {461, 824}},
             // The left screen's panel covers 856 to 880.
             {{-1920, 857}, {-1920, 856 - 540}},
             {{1, -500}, {24, -489 - 270}},
             {{1, -23}, {24, -540}}})
    {
        EXPECT_EQ(windowPlacement({icon, iconSize}, window, screens), expected);
    }
    const std::vector<ScreenArea> apart{withPanels(top), withPanels(top, {2000, 0, 1280, 800})};
    EXPECT_EQ(windowPlacement({QPoint(1300, 1), iconSize}, window, apart), QPoint(980, 24));
    EXPECT_EQ(windowPlacement({QPoint(1900, 1), iconSize}, window, apart), QPoint(2000, 24));
    EXPECT_EQ(windowPlacement({QPoint(-500, -500), iconSize}, window, apart), QPoint(0, 24));
}

TEST(WindowPlacement, TopLeftOfATooLargeWindowIsInside)
{
    const QRect small(100, 50, 200, 300);
    const QRect icon(QPoint(150, 320), iconSize);
    EXPECT_EQ(windowPlacement(icon, window, {withPanels(bottom, small)}), QPoint(100, 50));
    EXPECT_EQ(windowPlacement(icon, window, {withPanels(left, small)}), QPoint(124, 50));
}

TEST(WindowPlacement, IsAlwaysInsideTheAvailableAreaAndNeverCoversTheIcon)
{
    for (const QRect& whole : {frame, QRect(-1920, -300, 1920, 1080), QRect(100, 100, 300, 540)}) {
        for (const QMargins& panels : {top, bottom, left, right, unknown}) {
            const ScreenArea screen = withPanels(panels, whole);
            for (int x = whole.left() - 50; x <= whole.right() + 50; x += 7) {
                for (int y = whole.top() - 50; y <= whole.bottom() + 50; y += 7) {
                    const QRect icon(QPoint(x, y), iconSize);
                    const QSize size(200, 300);
                    const QRect placed(windowPlacement(icon, size, {screen}), size);
                    ASSERT_TRUE(screen.available.contains(placed)) << x << " " << y;
                    const bool hasSpace = whole == frame && whole.contains(icon);
                    ASSERT_FALSE(hasSpace && placed.intersects(icon)) << x << " " << y;
                }
            }
        }
    }
}

} // namespace
} // namespace orlimo
