#include "resources/ImageAsset.h"
#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

QImage icon(qreal ratio)
{
    return pixelsOf(imageNamed(u"StatusBarIcon", {16, 16}, ratio));
}

int alphaAt(const QImage& pixels, int x, int y)
{
    return qAlpha(pixels.pixel(x, y));
}

/// The part of a row or column that the bubble, the caret or the air between them fills.
struct Stretch
{
    int from;
    int to;
    int alpha;
};

void expectRow(const QImage& pixels, int row, const Stretch& stretch)
{
    for (int x = stretch.from; x <= stretch.to; ++x) {
        EXPECT_EQ(alphaAt(pixels, x, row), stretch.alpha) << "pixel " << x << ", " << row;
    }
}

void expectColumn(const QImage& pixels, int column, const Stretch& stretch)
{
    for (int y = stretch.from; y <= stretch.to; ++y) {
        EXPECT_EQ(alphaAt(pixels, column, y), stretch.alpha) << "pixel " << column << ", " << y;
    }
}

TEST(StatusBarIconTest, IsAShapeAlone)
{
    EXPECT_EQ(icon(3), tintedShape(icon(3), Qt::black));
}

TEST(StatusBarIconTest, ReachesTheEdgesOfItsBox)
{
    EXPECT_EQ(inkOf(icon(1)), QRect(0, 1, 16, 15));
}

TEST(StatusBarIconTest, LiesOnWholePixels)
{
    // Only round corners and what is slanted may be smeared. Half a pixel aside it would be 0.56.
    EXPECT_GE(crispPixelRatio(icon(1)), 0.65);
    EXPECT_GE(crispPixelRatio(icon(2)), 0.8);
}

TEST(StatusBarIconTest, HasABubbleWithSharpSides)
{
    const QImage pixels = icon(1);
    expectRow(pixels, 0, {0, 15, 0});
    expectRow(pixels, 1, {4, 11, 255});
    expectRow(pixels, 12, {4, 11, 255});
    expectColumn(pixels, 0, {5, 8, 255});
    expectColumn(pixels, 15, {5, 8, 255});
}

TEST(StatusBarIconTest, HasASharpCaretInTheBubble)
{
    const QImage pixels = icon(1);
    expectColumn(pixels, 11, {3, 10, 255});
    expectColumn(pixels, 12, {4, 9, 0});
    expectColumn(pixels, 13, {4, 9, 0});
    expectColumn(pixels, 14, {3, 10, 255});
}

TEST(StatusBarIconTest, HasAnAsteriskInTheBubble)
{
    const QImage pixels = icon(1);
    for (const QPoint hole : {QPoint(5, 4), QPoint(5, 9), QPoint(5, 6), QPoint(6, 7)}) {
        EXPECT_LT(alphaAt(pixels, hole.x(), hole.y()), 64) << hole.x() << ", " << hole.y();
    }
    for (const QPoint between : {QPoint(3, 3), QPoint(8, 3), QPoint(3, 10), QPoint(8, 10)}) {
        EXPECT_GT(alphaAt(pixels, between.x(), between.y()), 191)
            << between.x() << ", " << between.y();
    }
}

} // namespace
} // namespace orlimo
