#include "platform/desktop/SystemSymbol.h"

#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The text size beside which the program shows every symbol.
constexpr int textSize = 15;

class SystemSymbolTest : public testing::TestWithParam<const char16_t*>
{
protected:
    const QStringView name{GetParam()};
};

TEST_P(SystemSymbolTest, FillsItsSizeAtEveryScaleInTheColorOfTheText)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QPixmap symbol = systemSymbol(name, textSize, Qt::black, ratio);
        const QSizeF points = systemSymbolSize(name, textSize);
        EXPECT_EQ(symbol.size(), (points * ratio).toSize());
        EXPECT_EQ(symbol.devicePixelRatio(), ratio);
        EXPECT_FALSE(inkOf(pixelsOf(symbol)).isEmpty());
        const QColor color(10, 90, 200, 100);
        EXPECT_TRUE(isVisuallyEqual(
            pixelsOf(systemSymbol(name, textSize, color, ratio)),
            tintedShape(pixelsOf(symbol), color)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All,
    SystemSymbolTest,
    testing::Values(u"slider.horizontal.2.square", u"ellipsis.bubble.fill", u"hand.raised.fill"),
    [](const auto& instance) { return "Symbol" + std::to_string(instance.index); });

TEST(SystemSymbol, UnknownNameOrNoSizeGivesNone)
{
    for (const QStringView name : {u"", u"nothing", u"hand.raised.fill.svg"}) {
        EXPECT_TRUE(systemSymbol(name, textSize, Qt::black, 1).isNull());
        EXPECT_TRUE(systemSymbolSize(name, textSize).isEmpty());
    }
    EXPECT_TRUE(systemSymbol(u"hand.raised.fill", 0, Qt::black, 1).isNull());
    EXPECT_TRUE(systemSymbolSize(u"hand.raised.fill", 0).isEmpty());
}

} // namespace
} // namespace orlimo
