#include "platform/desktop/SystemSymbol.h"

#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

#include <array>

namespace orlimo {
namespace {

/// The text size beside which the program shows every symbol.
constexpr int textSize = 15;

constexpr std::array<QStringView, 3> names{
    u"slider.horizontal.2.square", u"ellipsis.bubble.fill", u"hand.raised.fill"};

TEST(SystemSymbol, FillsItsSizeInTheColorOfTheText)
{
    for (const QStringView name : names) {
        constexpr qreal ratio = 1.5;
        const QPixmap symbol = systemSymbol(name, textSize, Qt::black, ratio);
        EXPECT_EQ(symbol.size(), (systemSymbolSize(name, textSize) * ratio));
        EXPECT_EQ(symbol.devicePixelRatio(), ratio);
        EXPECT_FALSE(inkOf(pixelsOf(symbol)).isEmpty());
        const QColor color(10, 90, 200, 100);
        EXPECT_TRUE(isVisuallyEqual(
            pixelsOf(systemSymbol(name, textSize, color, ratio)),
            tintedShape(pixelsOf(symbol), color)));
    }
}

TEST(SystemSymbol, UnknownNameOrNoSizeGivesNone)
{
    for (const QStringView name : {u"", u"nothing", u"hand.raised.fill.svg"}) {
        EXPECT_TRUE(systemSymbol(name, textSize, Qt::black, 1).isNull());
        EXPECT_TRUE(systemSymbolSize(name, textSize).isEmpty());
    }
    EXPECT_TRUE(systemSymbol(names[0], 0, Qt::black, 1).isNull());
    EXPECT_TRUE(systemSymbolSize(names[0], 0).isEmpty());
}

} // namespace
} // namespace orlimo
