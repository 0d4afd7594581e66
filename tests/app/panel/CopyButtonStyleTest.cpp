#include "app/panel/CopyButtonStyle.h"

#include "app/guidance/DrawnView.h"
#include "controls/painting/RoundedRectangle.h"
#include "tests/support/widgets/Picture.h"

#include <QPainter>
#include <QPainterPath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

constexpr int padding = 16;
constexpr int edge = 60;

/// A square label, all in one colour.
DrawnView square(const QColor& color)
{
    return {.size = QSize(edge, edge), .draw = [color](QPainter& painter) {
                painter.fillRect(QRect(0, 0, edge, edge), color);
            }};
}

Picture pictureOf(const DrawnView& view, double scale)
{
    return Picture::drawn(view.size, scale, view.draw);
}

class CopyButtonStyleTest : public testing::TestWithParam<double>
{};

TEST_P(CopyButtonStyleTest, PadsItsLabel)
{
    const DrawnView body = CopyButtonStyle::makeBody({.label = square(Qt::red)});
    EXPECT_EQ(body.size, QSize(edge + 2 * padding, edge + 2 * padding));
    EXPECT_EQ(pictureOf(body, GetParam()).ink(), QRectF(padding, padding, edge, edge));
}

TEST_P(CopyButtonStyleTest, RoundsItsLabelByItself)
{
    const Picture picture =
        pictureOf(CopyButtonStyle::makeBody({.label = square(Qt::red)}), GetParam());
    QPainterPath rounded = continuousRoundedRectangle(QRectF(padding, padding, edge, edge), 10);
    const Picture expected = Picture::drawn(
        QSize(edge + 2 * padding, edge + 2 * padding), GetParam(), [&](QPainter& painter) {
            painter.fillPath(rounded, Qt::red);
        });
    EXPECT_EQ(picture.differenceFrom(expected), QRectF());
    EXPECT_EQ(picture.at(QPointF(padding + 1.5, padding + 1.5)).alpha(), 0);
    EXPECT_EQ(picture.at(QPointF(padding + 4.5, padding + 4.5)), QColor(Qt::red));
}

TEST_P(CopyButtonStyleTest, LetsItsLabelWriteInWhite)
{
    QColor pen;
    const DrawnView label{.size = QSize(edge, edge), .draw = [&pen](QPainter& painter) {
                              pen = painter.pen().color();
                          }};
    (void)pictureOf(CopyButtonStyle::makeBody({.label = label}), GetParam());
    EXPECT_EQ(pen, QColor(Qt::white));
}

TEST_P(CopyButtonStyleTest, LooksTheSameWhilePressed)
{
    const Picture released = pictureOf(
        CopyButtonStyle::makeBody({.label = square(Qt::red), .isPressed = false}), GetParam());
    const Picture pressed = pictureOf(
        CopyButtonStyle::makeBody({.label = square(Qt::red), .isPressed = true}), GetParam());
    EXPECT_EQ(pressed.differenceFrom(released), QRectF());
}

TEST_P(CopyButtonStyleTest, LeavesThePainterAsItWas)
{
    (void)Picture::drawn(QSize(200, 200), GetParam(), [](QPainter& painter) {
        painter.setPen(Qt::green);
        CopyButtonStyle::makeBody({.label = square(Qt::red)}).draw(painter);
        EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
        EXPECT_TRUE(painter.transform().isIdentity());
    });
}

INSTANTIATE_TEST_SUITE_P(
    PixelsPerPoint, CopyButtonStyleTest, testing::Values(1, 2, 3), [](const auto& testInfo) {
        return std::to_string(static_cast<int>(testInfo.param));
    });

TEST(DrawnView, IsClippedToARoundedRectangle)
{
    const DrawnView clipped = clippedToRoundedRectangle(square(Qt::red), 20);
    EXPECT_EQ(clipped.size, QSize(edge, edge));
    const Picture picture = pictureOf(clipped, 2);
    const Picture expected = Picture::drawn(clipped.size, 2, [](QPainter& painter) {
        painter.fillPath(continuousRoundedRectangle(QRectF(0, 0, edge, edge), 20), Qt::red);
    });
    EXPECT_EQ(picture.differenceFrom(expected), QRectF());
}

TEST(DrawnView, ClippedKeepsWhatItLetsThrough)
{
    const DrawnView clipped = clippedToRoundedRectangle(square(QColor(255, 0, 0, 128)), 20);
    EXPECT_THAT(pictureOf(clipped, 1).at(QPointF(30, 30)), isColor(QColor(255, 0, 0, 128)));
}

} // namespace
} // namespace orlimo
