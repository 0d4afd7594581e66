#include "platform/SystemSymbol.h"
#include "tests/platform/macos/standins/ScriptedAppKit.h"
#include "tests/support/PixelReading.h"
#include "tests/support/QtPrinting.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

class NamedSymbolTest : public testing::Test
{
protected:
    NamedSymbolTest()
    {
        scriptedAppKit() = {};
        scriptedAppKit().symbols = {{"box", {1.5, 1.0}}, {"odd", {1.03, 0.97}}};
    }
};

TEST_F(NamedSymbolTest, HasTheSizeThatTheSystemGivesItBesideSuchText)
{
    EXPECT_EQ(systemSymbolSize(u"box", 10), QSize(15, 10));
    EXPECT_EQ(systemSymbolSize(u"box", 20), QSize(30, 20));
    EXPECT_EQ(systemSymbolSize(u"odd", 10), QSize(11, 10));
}

TEST_F(NamedSymbolTest, IsDrawnAtThatSizeInEveryScale)
{
    for (const qreal ratio : {1.0, 2.0, 3.0}) {
        const QPixmap pixmap = systemSymbol(u"box", 10, Qt::black, ratio);
        EXPECT_EQ(pixmap.size(), (QSizeF(15, 10) * ratio).toSize());
        EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(15, 10));
    }
}

TEST_F(NamedSymbolTest, IsTheRightWayUpAndAllInTheColour)
{
    const QColor colour(10, 90, 200);
    const QImage pixels = pixelsOf(systemSymbol(u"box", 10, colour, 2));
    EXPECT_EQ(pixels.pixelColor(2, 2), colour);
    EXPECT_EQ(pixels.pixelColor(2, 17), colour);
    EXPECT_EQ(pixels.pixelColor(27, 2), colour);
    EXPECT_EQ(pixels.pixelColor(27, 17).alpha(), 0);
}

TEST_F(NamedSymbolTest, StandsInTheMiddleOfItsWholePoints)
{
    const QRect ink = inkOf(pixelsOf(systemSymbol(u"odd", 10, Qt::black, 10)));
    // 10.3 by 9.7 points in 11 by 10.
    EXPECT_NEAR(ink.left(), 3.5, 1);
    EXPECT_NEAR(109 - ink.right(), 3.5, 1);
    EXPECT_NEAR(ink.top(), 1.5, 1);
    EXPECT_NEAR(99 - ink.bottom(), 1.5, 1);
}

TEST_F(NamedSymbolTest, LeavesTheGraphicsStateAsItWas)
{
    EXPECT_FALSE(systemSymbol(u"box", 10, Qt::black, 1).isNull());
    EXPECT_EQ([NSGraphicsContext currentContext], nil);
}

} // namespace
} // namespace orlimo
