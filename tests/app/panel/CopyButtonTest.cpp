#include "app/panel/CopyButton.h"

#include "app/panel/CopyButtonStyle.h"
#include "controls/painting/Colors.h"
#include "controls/painting/RoundedRectangle.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"

#include <QPainter>
#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A point of the pill beside its text, and one of the padding around it.
constexpr QPoint onPill(30, 36);
constexpr QPoint onPadding(8, 36);

/// The copy button in the shown menu-bar window.
class CopyButtonTest : public ViewTestBase
{
protected:
    CopyButtonTest() { pointer::moveTo(*menu, QPoint(5, 5)); }

    /// The color at a point of the button as the user sees it.
    [[nodiscard]] QColor seenAt(QPointF point) const
    {
        return Picture::ofWindow(*menu).at(areaIn(*menu, copy).topLeft() + point);
    }

    /// Expects the accent in full, or seen through four fifths of itself.
    void expectHovered(bool hovered) const
    {
        QColor expected = accentColor(copy.palette());
        expected.setAlphaF(hovered ? 0.8F : 1.0F);
        EXPECT_EQ(copy.isHovered(), hovered);
        EXPECT_THAT(seenAt(onPill), isColor(blended(expected, surfaceColor(copy.palette()))));
    }

    PaletteChange palette{lightPalette()};
    std::unique_ptr<QWidget> menu = shownMenu();
    CopyButton& copy = named<CopyButton>(*menu, "copy");
};

TEST_F(CopyButtonTest, LightensUnderPointerOnPillAlone)
{
    expectHovered(false);
    EXPECT_THAT(seenAt(onPadding), isColor(surfaceColor(lightPalette())));
    for (const QPoint edge : {QPoint(16, 36), QPoint(86, 16), QPoint(155, 36), QPoint(86, 55)}) {
        pointer::moveTo(copy, edge);
        expectHovered(true);
        pointer::moveTo(copy, onPadding);
        expectHovered(false);
    }
    for (const QPoint outside : {QPoint(86, 8), QPoint(164, 36), QPoint(86, 64)}) {
        pointer::moveTo(copy, outside);
        expectHovered(false);
    }
    pointer::press(copy, onPill);
    ASSERT_TRUE(copy.isDown());
    expectHovered(true);
    pointer::release(copy, onPill);
    pointer::leave(*menu);
    expectHovered(false);
    pointer::moveTo(copy, onPill);
    menu->hide();
    EXPECT_FALSE(copy.isHovered());
}

TEST_F(CopyButtonTest, IsRepaintedWhenPointerEntersAndLeaves)
{
    for (const QPoint position : {onPill, onPadding}) {
        runEventLoop(std::chrono::milliseconds(20));
        const EventCount paints(QEvent::Paint);
        pointer::moveTo(copy, position);
        EXPECT_TRUE(await([&] { return paints.count() > 0; }));
    }
}

TEST_F(CopyButtonTest, IsClickedOnPillAloneAndByKeyboard)
{
    QSignalSpy clicked(&copy, &CopyButton::clicked);
    pointer::click(copy, onPill);
    pointer::click(copy, onPadding);
    pointer::click(copy, QPoint(86, 65));
    EXPECT_EQ(clicked.count(), 1);
    int expected = 1;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&copy, key);
        EXPECT_EQ(clicked.count(), ++expected) << key;
    }
}

TEST_F(CopyButtonTest, IsPillWithCornersOfRadius20AndTextInItsMiddle)
{
    const Picture with = Picture::of(copy);
    copy.setText(QString());
    const Picture without = Picture::of(copy);
    const QRectF text = with.differenceFrom(without);
    EXPECT_NEAR(text.center().x(), 86, 2);
    EXPECT_NEAR(text.center().y(), 36, 3);
    const Picture pill = Picture::drawn(copy.size(), with.pixelsPerPoint(), [&](QPainter& painter) {
        painter.fillPath(
            continuousRoundedRectangle(QRectF(16, 16, 140, 40), 20), accentColor(copy.palette()));
    });
    EXPECT_EQ(without.differenceFrom(pill, 64), QRectF());
    EXPECT_EQ(without.ink(), QRectF(16, 16, 140, 40));
}

TEST_F(CopyButtonTest, HasFocusRingAroundPillUnlessClicked)
{
    const QColor ring = focusRingColor(lightPalette());
    const QColor ground = surfaceColor(lightPalette());
    pointer::click(copy, onPill);
    ASSERT_TRUE(copy.hasFocus());
    EXPECT_THAT(seenAt(QPointF(86, 16 - 2)), isColor(ground));
    copy.clearFocus();
    copy.setFocus(Qt::TabFocusReason);
    EXPECT_THAT(seenAt(QPointF(86, 16 - 2)), isColor(ring));
    EXPECT_THAT(seenAt(QPointF(86, 56 + 1.5)), isColor(ring));
    EXPECT_THAT(seenAt(QPointF(86, 16 - 0.5)), isColor(ground));
}

/// A square of 60 points, all in one color.
DrawnView square(const QColor& color)
{
    return {.size = QSize(60, 60), .draw = [color](QPainter& painter) {
                painter.fillRect(QRect(0, 0, 60, 60), color);
            }};
}

TEST(CopyButtonStyle, RoundsLabelByRadius10AndPadsIt)
{
    for (const bool isPressed : {false, true}) {
        const DrawnView body =
            CopyButtonStyle::makeBody({.label = square(Qt::red), .isPressed = isPressed});
        EXPECT_EQ(body.size, QSize(60 + 2 * 16, 60 + 2 * 16));
        for (const double scale : {1, 2, 3}) {
            const auto expected = Picture::drawn(body.size, scale, [](QPainter& painter) {
                painter.fillPath(continuousRoundedRectangle(QRectF(16, 16, 60, 60), 10), Qt::red);
            });
            const Picture picture = Picture::drawn(body.size, scale, body.draw);
            EXPECT_EQ(picture.differenceFrom(expected), QRectF());
        }
    }
}

TEST(CopyButtonStyle, HasLabelDrawnInWhiteAndRestoresPainter)
{
    QColor pen;
    const DrawnView label{
        .size = QSize(60, 60), .draw = [&pen](QPainter& painter) { pen = painter.pen().color(); }};
    (void)Picture::drawn(QSize(200, 200), 1, [&](QPainter& painter) {
        painter.setPen(Qt::green);
        CopyButtonStyle::makeBody({.label = label}).draw(painter);
        EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
        EXPECT_TRUE(painter.transform().isIdentity());
    });
    EXPECT_EQ(pen, QColor(Qt::white));
}

TEST(DrawnView, KeepsItsSizeAndOpacityWhenClipped)
{
    const QColor translucent(255, 0, 0, 128);
    const DrawnView clipped = clippedToRoundedRectangle(square(translucent), 20);
    EXPECT_EQ(clipped.size, QSize(60, 60));
    EXPECT_THAT(Picture::drawn(clipped.size, 1, clipped.draw).at({30, 30}), isColor(translucent));
}

} // namespace
} // namespace orlimo
