#include "controls/SymbolLabel.h"

#include "controls/TextLabel.h"
#include "platform/desktop/SystemSymbol.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <QPainter>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

const QString symbol = QStringLiteral("ellipsis.bubble.fill");

class SymbolLabelTest : public testing::Test
{
protected:
    SymbolLabelTest()
    {
        label.resize(260, 18);
        layOut(label);
    }

    /// The symbol alone, as it is drawn at this moment.
    static QRectF differenceToSymbol(SymbolLabel& drawn, const QColor& color)
    {
        const Picture picture = Picture::of(drawn);
        const Picture expected =
            Picture::drawn(drawn.size(), picture.pixelsPerPoint(), [&](QPainter& painter) {
                painter.drawPixmap(
                    drawn.symbolArea().topLeft(),
                    systemSymbol(drawn.symbolName(), 15, color, picture.pixelsPerPoint()));
            });
        return picture.differenceFrom(expected);
    }

    PaletteChange palette{lightPalette()};
    SymbolLabel label{
        QStringLiteral("Latest Code"), symbol, {systemSymbol, systemSymbolSize}, 15, grayColor};
};

TEST_F(SymbolLabelTest, HasTextAfterSymbolOnOneLine)
{
    EXPECT_EQ(label.minimumHeight(), 18);
    EXPECT_EQ(label.maximumHeight(), 18);
    EXPECT_EQ(label.textLabel().fontPixelSize(), 15);
    EXPECT_EQ(label.textLabel().font().weight(), QFont::Normal);
    const QSize size = systemSymbolSize(symbol, 15);
    ASSERT_FALSE(size.isEmpty());
    EXPECT_EQ(label.symbolArea().size(), size);
    EXPECT_NEAR(QRectF(label.symbolArea()).center().y(), 9, 0.5);
    EXPECT_TRUE(label.rect().contains(label.symbolArea()));
    EXPECT_EQ(label.symbolArea().left(), 0);
    EXPECT_EQ(
        areaIn(label, label.textLabel()).topLeft(), QPoint(size.width() + SymbolLabel::gap, 0));
    expectNothingClipped(label);
}

TEST_F(SymbolLabelTest, DrawsSymbolInCurrentTextColor)
{
    const double textLeft = areaIn(label, label.textLabel()).left();
    EXPECT_GE(differenceToSymbol(label, grayColor(lightPalette())).left(), textLeft);
    EXPECT_EQ(label.textLabel().paintedColor(), grayColor(lightPalette()));
    const PaletteChange dark(darkPalette());
    EXPECT_GE(differenceToSymbol(label, grayColor(darkPalette())).left(), textLeft);
    EXPECT_EQ(label.textLabel().paintedColor(), grayColor(darkPalette()));
}

TEST_F(SymbolLabelTest, IsMirrored)
{
    label.setLayoutDirection(Qt::RightToLeft);
    layOut(label);
    EXPECT_EQ(label.symbolArea().left() + label.symbolArea().width(), 260);
    const QRect text = areaIn(label, label.textLabel());
    EXPECT_EQ(text.left() + text.width() + SymbolLabel::gap, label.symbolArea().left());
    expectNothingClipped(label);
}

TEST_F(SymbolLabelTest, WithUnknownSymbolIsItsText)
{
    SymbolLabel without(
        QStringLiteral("Latest Code"),
        QStringLiteral("no.such.symbol"),
        {systemSymbol, systemSymbolSize},
        15);
    without.resize(260, 18);
    layOut(without);
    EXPECT_EQ(areaIn(without, without.textLabel()), without.rect());
}

} // namespace
} // namespace orlimo
