#include "resources/ImageAsset.h"
#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The surface of the guidance window, on which the logo stands.
const QColor darkSurface(0x1f, 0x21, 0x26);

/// What graphics need to be told apart, and what marks as fine as text need.
constexpr double graphicContrast = 3;
constexpr double textContrast = 4.5;

class LogoTest : public testing::Test
{
protected:
    /// The colour at a point of the logo's own hundred by hundred.
    [[nodiscard]] QColor at(int x, int y) const { return pixels.pixelColor(2 * x, 2 * y); }

    const QImage pixels = pixelsOf(imageNamed(u"logo", {100, 100}, 2));
    const QPoint aroundBubble[4] = {{50, 19}, {13, 46}, {87, 46}, {62, 74}};
};

TEST_F(LogoTest, StandsOutFromTheDarkSurface)
{
    for (const QPoint point : {QPoint(50, 8), QPoint(8, 50), QPoint(92, 50), QPoint(50, 92)}) {
        EXPECT_EQ(at(point.x(), point.y()).alpha(), 255);
        EXPECT_GE(contrastOf(at(point.x(), point.y()), darkSurface), graphicContrast)
            << point.x() << ", " << point.y();
    }
}

TEST_F(LogoTest, HasABubbleThatStandsOutFromTheTile)
{
    for (const QPoint point : aroundBubble) {
        EXPECT_GE(contrastOf(at(point.x(), point.y()), at(24, 46)), graphicContrast)
            << point.x() << ", " << point.y();
    }
}

TEST_F(LogoTest, HasAnAsteriskAndACaretThatStandOutFromTheBubble)
{
    const QColor bubble = at(24, 46);
    EXPECT_GE(contrastOf(at(42, 36), bubble), textContrast);
    EXPECT_GE(contrastOf(at(42, 56), bubble), textContrast);
    EXPECT_GE(contrastOf(at(67, 46), bubble), graphicContrast);
    EXPECT_GE(contrastOf(at(59, 46), at(67, 46)), graphicContrast) << "the gap before the caret";
}

TEST_F(LogoTest, IsATileWithAMarginAndRoundCorners)
{
    EXPECT_EQ(inkOf(pixels), QRect(12, 12, 176, 176));
    for (const QPoint corner : {QPoint(8, 8), QPoint(91, 8), QPoint(8, 91), QPoint(91, 91)}) {
        EXPECT_EQ(at(corner.x(), corner.y()).alpha(), 0);
    }
}

TEST_F(LogoTest, KeepsItsMarkAsASmallIcon)
{
    const QImage small = pixelsOf(imageNamed(u"logo", {16, 16}, 1));
    const QColor tile = small.pixelColor(8, 2);
    const QColor bubble = small.pixelColor(4, 5);
    const QColor asterisk = small.pixelColor(6, 7);
    EXPECT_GE(contrastOf(bubble, tile), 2);
    EXPECT_GE(contrastOf(asterisk, bubble), graphicContrast);
}

} // namespace
} // namespace orlimo
