#include "app/panel/CopyButton.h"

#include "app/panel/StatusMenuView.h"
#include "controls/painting/Colors.h"
#include "controls/painting/RoundedRectangle.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"

#include <QAccessible>
#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

/// A point of the pill beside its text, and one of the padding around it.
constexpr QPoint onPill(30, 36);
constexpr QPoint onPadding(8, 36);

/// The copy button where it belongs, in the shown menu-bar window.
class CopyButtonTest : public ViewTestBase
{
protected:
    CopyButtonTest() { pointer::moveTo(*menu, QPoint(5, 5)); }

    /// The colour at a point of the button as the user sees it.
    [[nodiscard]] QColor seenAt(QPointF point) const
    {
        return Picture::ofWindow(*menu).at(areaIn(*menu, copy).topLeft() + point);
    }

    PaletteChange palette{lightPalette()};
    std::unique_ptr<QWidget> menu = shownMenu();
    CopyButton& copy = named<CopyButton>(*menu, "copy");
    const QColor accent = accentColor(lightPalette());
    const QColor ground = surfaceColor(lightPalette());
};

/// The accent as it is seen through four fifths of itself.
QColor lightened(QColor accent, const QColor& ground)
{
    accent.setAlphaF(0.8F);
    return blended(accent, ground);
}

TEST_F(CopyButtonTest, IsAPillInTheAccentColor)
{
    EXPECT_FALSE(copy.isHovered());
    EXPECT_THAT(seenAt(onPill), isColor(accent));
    EXPECT_THAT(seenAt(onPadding), isColor(ground));
}

TEST_F(CopyButtonTest, LightensUnderThePointer)
{
    pointer::moveTo(copy, onPill);
    EXPECT_TRUE(copy.isHovered());
    EXPECT_THAT(seenAt(onPill), isColor(lightened(accent, ground)));
    EXPECT_GT(contrastRatio(lightened(accent, ground), accent), 1.2);
}

TEST_F(CopyButtonTest, RestoresTheAccentColorWhenThePointerLeaves)
{
    const Picture before = Picture::ofWindow(*menu);
    pointer::moveTo(copy, onPill);
    pointer::moveTo(*menu, QPoint(5, 5));
    EXPECT_FALSE(copy.isHovered());
    EXPECT_EQ(Picture::ofWindow(*menu).differenceFrom(before), QRectF());
}

TEST_F(CopyButtonTest, RestoresTheAccentColorWhenThePointerLeavesTheWindow)
{
    pointer::moveTo(copy, onPill);
    ASSERT_TRUE(copy.isHovered());
    pointer::leave(*menu);
    EXPECT_FALSE(copy.isHovered());
    EXPECT_THAT(seenAt(onPill), isColor(accent));
}

TEST_F(CopyButtonTest, IsNotHoveredInThePaddingAroundThePill)
{
    for (const QPoint point : {onPadding, QPoint(86, 8), QPoint(164, 36), QPoint(86, 64)}) {
        pointer::moveTo(copy, point);
        EXPECT_FALSE(copy.isHovered()) << testing::PrintToString(point);
        EXPECT_THAT(seenAt(onPill), isColor(accent));
    }
}

TEST_F(CopyButtonTest, IsHoveredOnEveryEdgeOfThePill)
{
    for (const QPoint point : {QPoint(16, 36), QPoint(86, 16), QPoint(155, 36), QPoint(86, 55)}) {
        pointer::moveTo(copy, point);
        EXPECT_TRUE(copy.isHovered()) << testing::PrintToString(point);
        pointer::moveTo(copy, onPadding);
        EXPECT_FALSE(copy.isHovered());
    }
}

TEST_F(CopyButtonTest, IsRepaintedWhenThePointerComesAndGoes)
{
    runEventLoop(std::chrono::milliseconds(20));
    const EventCount paints(QEvent::Paint);
    pointer::moveTo(copy, onPill);
    EXPECT_TRUE(await([&] { return paints.count() > 0; }));
    const int before = paints.count();
    pointer::moveTo(copy, onPadding);
    EXPECT_TRUE(await([&] { return paints.count() > before; }));
}

TEST_F(CopyButtonTest, IsNoLongerHoveredOnceItsWindowIsHidden)
{
    pointer::moveTo(copy, onPill);
    ASSERT_TRUE(copy.isHovered());
    menu->hide();
    EXPECT_FALSE(copy.isHovered());
}

TEST_F(CopyButtonTest, ShowsNothingOfAPress)
{
    pointer::moveTo(copy, onPill);
    const Picture hovered = Picture::ofWindow(*menu);
    pointer::press(copy, onPill);
    ASSERT_TRUE(copy.isDown());
    EXPECT_EQ(Picture::ofWindow(*menu).differenceFrom(hovered), QRectF());
    pointer::release(copy, onPill);
    EXPECT_EQ(Picture::ofWindow(*menu).differenceFrom(hovered), QRectF());
}

TEST_F(CopyButtonTest, ShowsNothingOfAPressByTheKeyboard)
{
    copy.setFocus(Qt::MouseFocusReason);
    const Picture released = Picture::of(copy);
    QTest::keyPress(&copy, Qt::Key_Space);
    ASSERT_TRUE(copy.isDown());
    EXPECT_EQ(Picture::of(copy).differenceFrom(released), QRectF());
    QTest::keyRelease(&copy, Qt::Key_Space);
}

TEST_F(CopyButtonTest, IsClickedOnThePillAlone)
{
    QSignalSpy clicked(&copy, &CopyButton::clicked);
    pointer::click(copy, onPill);
    EXPECT_EQ(clicked.count(), 1);
    pointer::click(copy, onPadding);
    pointer::click(copy, QPoint(86, 65));
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(CopyButtonTest, IsClickedByTheKeyboard)
{
    QSignalSpy clicked(&copy, &CopyButton::clicked);
    copy.setFocus(Qt::TabFocusReason);
    int expected = 0;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&copy, key);
        EXPECT_EQ(clicked.count(), ++expected) << key;
    }
}

TEST_F(CopyButtonTest, HasTheRoundCornersOfItsPillAndNothingAround)
{
    const Picture picture = Picture::of(copy);
    EXPECT_EQ(picture.ink(), QRectF(16, 16, 140, 40));
    // Between a corner of radius 20 and one of radius 10.
    for (const QPointF corner :
         {QPointF(20.2, 20.2), QPointF(151.7, 20.2), QPointF(20.2, 51.7), QPointF(151.7, 51.7)})
    {
        EXPECT_EQ(picture.at(corner).alpha(), 0) << testing::PrintToString(corner.toPoint());
    }
    const QPainterPath pill = continuousRoundedRectangle(QRectF(16, 16, 140, 40), 20);
    for (double x = 0.25; x < copy.width(); x += 0.5) {
        for (double y = 0.25; y < copy.height(); y += 0.5) {
            const QRectF around(x - 1.5, y - 1.5, 3, 3);
            if (pill.contains(around)) {
                ASSERT_EQ(picture.at(QPointF(x, y)).alpha(), 255) << x << "," << y;
            } else if (!pill.intersects(around)) {
                ASSERT_EQ(picture.at(QPointF(x, y)).alpha(), 0) << x << "," << y;
            }
        }
    }
}

TEST_F(CopyButtonTest, WritesInWhiteInTheMiddle)
{
    const Picture with = Picture::of(copy);
    copy.setText(QString());
    const QRectF ink = with.differenceFrom(Picture::of(copy));
    EXPECT_NEAR(ink.center().x(), 86, 2);
    EXPECT_NEAR(ink.center().y(), 36, 3);
    int brightest = 0;
    for (double x = ink.left() + 0.25; x < ink.right(); x += 0.5) {
        for (double y = ink.top() + 0.25; y < ink.bottom(); y += 0.5) {
            const QColor color = with.at(QPointF(x, y));
            brightest = std::max(brightest, std::min({color.red(), color.green(), color.blue()}));
        }
    }
    EXPECT_GE(brightest, 240);
}

TEST_F(CopyButtonTest, HasALegibleLabelWhateverTheAccent)
{
    for (const QColor& chosen :
         {QColor(Qt::white),
          QColor(255, 255, 220),
          QColor(255, 230, 0),
          QColor(0, 255, 255),
          QColor(0, 255, 0),
          QColor(255, 149, 0),
          QColor(255, 45, 85),
          QColor(175, 82, 222),
          QColor(53, 132, 228),
          QColor(142, 142, 147),
          QColor(0, 70, 160),
          QColor(20, 20, 20),
          QColor(Qt::black)})
    {
        for (const QPalette& scheme : {lightPalette(chosen), darkPalette(chosen)}) {
            const PaletteChange change(scheme);
            const QColor pill = seenAt(onPill);
            EXPECT_GE(contrastRatio(pill, Qt::white), legibleContrast)
                << testing::PrintToString(chosen);
            EXPECT_THAT(pill, isColor(accentColor(scheme)));
        }
    }
}

TEST_F(CopyButtonTest, FollowsAChangeOfPaletteWhileItIsHoveredToo)
{
    pointer::moveTo(copy, onPill);
    const QPalette scheme = darkPalette(QColor(200, 30, 60));
    const PaletteChange change(scheme);
    EXPECT_THAT(seenAt(onPill), isColor(lightened(accentColor(scheme), surfaceColor(scheme))));
    pointer::moveTo(copy, onPadding);
    EXPECT_THAT(seenAt(onPill), isColor(accentColor(scheme)));
}

TEST_F(CopyButtonTest, HasItsFocusRingAroundThePill)
{
    copy.setFocus(Qt::TabFocusReason);
    const QColor ring = focusRingColor(lightPalette());
    EXPECT_THAT(seenAt(QPointF(86, 16 - 2)), isColor(ring));
    EXPECT_THAT(seenAt(QPointF(86, 56 + 1.5)), isColor(ring));
    EXPECT_THAT(seenAt(QPointF(86, 16 - 0.5)), isColor(ground));
    copy.clearFocus();
    EXPECT_THAT(seenAt(QPointF(86, 16 - 2)), isColor(ground));
}

TEST_F(CopyButtonTest, HasNoFocusRingAfterAClick)
{
    pointer::click(copy, onPill);
    ASSERT_TRUE(copy.hasFocus());
    EXPECT_THAT(seenAt(QPointF(86, 16 - 2)), isColor(ground));
}

TEST_F(CopyButtonTest, IsAnnouncedAsAButton)
{
    auto* accessible = QAccessible::queryAccessibleInterface(&copy);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Copy"));
}

} // namespace
} // namespace orlimo
