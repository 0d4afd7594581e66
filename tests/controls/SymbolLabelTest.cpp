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
const QString text = QStringLiteral("Latest Code");
const SystemSymbols symbols{systemSymbol, systemSymbolSize};

class SymbolLabelTest : public testing::Test
{
protected:
    SymbolLabelTest()
    {
        label.resize(260, 18);
        layOut(label);
    }

    /// Where the label's text is.
    [[nodiscard]] QRect textArea() const { return areaIn(label, label.textLabel()); }

    PaletteChange palette{lightPalette()};
    SymbolLabel label{text, symbol, symbols, 15, grayColor};
    const QSize size = systemSymbolSize(symbol, 15);
};

TEST_F(SymbolLabelTest, HasTextAfterSymbolOnOneLine)
{
    EXPECT_EQ(label.minimumHeight(), 18);
    EXPECT_EQ(label.maximumHeight(), 18);
    EXPECT_EQ(label.textLabel().fontPixelSize(), 15);
    EXPECT_EQ(label.textLabel().font().weight(), QFont::Normal);
    ASSERT_FALSE(size.isEmpty());
    EXPECT_EQ(label.symbolArea().size(), size);
    EXPECT_NEAR(QRectF(label.symbolArea()).center().y(), 9, 0.5);
    EXPECT_TRUE(label.rect().contains(label.symbolArea()));
    EXPECT_EQ(label.symbolArea().left(), 0);
    EXPECT_EQ(textArea().topLeft(), QPoint(size.width() + SymbolLabel::gap, 0));
    expectNothingClipped(label);
}

TEST_F(SymbolLabelTest, DrawsSymbolAndTextInCurrentColor)
{
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        EXPECT_EQ(label.textLabel().paintedColor(), grayColor(scheme));
        const Picture picture = Picture::of(label);
        const double scale = picture.pixelsPerPoint();
        const Picture symbolAlone = Picture::drawn(label.size(), scale, [&](QPainter& painter) {
            painter.drawPixmap(
                label.symbolArea().topLeft(), systemSymbol(symbol, 15, grayColor(scheme), scale));
        });
        EXPECT_GE(picture.differenceFrom(symbolAlone).left(), textArea().left());
    }
}

TEST_F(SymbolLabelTest, IsMirrored)
{
    label.setLayoutDirection(Qt::RightToLeft);
    layOut(label);
    EXPECT_EQ(label.symbolArea().left() + size.width(), 260);
    EXPECT_EQ(textArea().left() + textArea().width() + SymbolLabel::gap, label.symbolArea().left());
    expectNothingClipped(label);
}

TEST_F(SymbolLabelTest, WithUnknownSymbolIsItsText)
{
    SymbolLabel without(text, QStringLiteral("no.such.symbol"), symbols, 15);
    without.resize(260, 18);
    layOut(without);
    EXPECT_EQ(areaIn(without, without.textLabel()), without.rect());
}

} // namespace
} // namespace orlimo
