#include "platform/desktop/SystemSymbol.h"
#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <string>

namespace orlimo {
namespace {

/// The text beside which the program shows every symbol.
constexpr int textSize = 15;

class SymbolArtworkTest : public testing::TestWithParam<const char*>
{
protected:
    const QString name = QString::fromLatin1(GetParam());

    [[nodiscard]] QImage drawn(qreal ratio, const QColor& color = Qt::black) const
    {
        return pixelsOf(systemSymbol(name, textSize, color, ratio));
    }
};

TEST_P(SymbolArtworkTest, IsAFifthLargerThanTheTextBesideIt)
{
    EXPECT_EQ(systemSymbolSize(name, 10), QSize(12, 12));
    EXPECT_EQ(systemSymbolSize(name, 15), QSize(18, 18));
    EXPECT_EQ(systemSymbolSize(name, 24), QSize(29, 29));
}

TEST_P(SymbolArtworkTest, StandsALittleAboveCapitalsAndInTheMiddle)
{
    const int ratio = 4;
    const QRect ink = inkOf(drawn(ratio));
    EXPECT_GE(ink.height(), 14 * ratio);
    EXPECT_LE(ink.height(), 16 * ratio);
    EXPECT_GE(ink.width(), 14 * ratio);
    EXPECT_LE(ink.width(), 16 * ratio);
    EXPECT_NEAR((ink.left() + ink.right()) / 2.0 / ratio, 9, 0.5);
    EXPECT_NEAR((ink.top() + ink.bottom()) / 2.0 / ratio, 9, 0.5);
}

std::string caseName(const testing::TestParamInfo<const char*>& info)
{
    std::string name;
    for (const char character : std::string(info.param)) {
        name.push_back(std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_');
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    All,
    SymbolArtworkTest,
    testing::Values("slider.horizontal.2.square", "ellipsis.bubble.fill", "hand.raised.fill"),
    caseName);

/// The symbol at one pixel a point beside the program's text, where a smeared edge shows most.
class SharpSymbolTest : public testing::Test
{
protected:
    /// Expects a row of pixels that are drawn (#), half drawn (+) and left out.
    static void expectRow(QStringView name, int row, const std::string& expected)
    {
        const QImage pixels = pixelsOf(systemSymbol(name, textSize, Qt::black, 1));
        std::string found;
        for (int x = 0; x < pixels.width(); ++x) {
            const int alpha = qAlpha(pixels.pixel(x, row));
            found.push_back(alpha >= 192 ? '#' : alpha < 96 ? ' ' : '+');
        }
        EXPECT_EQ(found, expected) << name.toString().toStdString() << ", row " << row;
    }
};

TEST_F(SharpSymbolTest, HasASquareWithSharpSidesAndTracks)
{
    expectRow(u"slider.horizontal.2.square", 0, "                  ");
    expectRow(u"slider.horizontal.2.square", 9, " #+  ++        +# ");
    expectRow(u"slider.horizontal.2.square", 6, " #+ ########## +# ");
    expectRow(u"slider.horizontal.2.square", 11, " #+ ########## +# ");
}

TEST_F(SharpSymbolTest, HasABubbleWithSharpSidesAndDots)
{
    expectRow(u"ellipsis.bubble.fill", 1, "                  ");
    expectRow(u"ellipsis.bubble.fill", 7, " ###  ##  ##  ### ");
    expectRow(u"ellipsis.bubble.fill", 8, " ###  ##  ##  ### ");
    expectRow(u"ellipsis.bubble.fill", 9, " ################ ");
}

TEST_F(SharpSymbolTest, HasAHandWithSharpFingers)
{
    expectRow(u"hand.raised.fill", 0, "                  ");
    expectRow(u"hand.raised.fill", 7, "     ## ## ## ##  ");
    expectRow(u"hand.raised.fill", 3, "     ## ## ##     ");
}

TEST(SymbolOfAnotherNameTest, IsNoneOfTheProgramsOwn)
{
    for (const QStringView name : {u"logo", u"hand.raised"}) {
        EXPECT_TRUE(systemSymbol(name, textSize, Qt::black, 1).isNull())
            << name.toString().toStdString();
    }
}

} // namespace
} // namespace orlimo
