#include "controls/TextLabel.h"

#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

const QString sentence =
    QStringLiteral("Full Disk Access is required to read the verification code from Messages.");

TEST(TextLabel, AlignsItsTextOnOneLine)
{
    TextLabel label(QStringLiteral("Copy"), 15);
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.sizeHint().height(), 18);
    EXPECT_EQ(label.minimumSizeHint(), QSize(0, 18));
    EXPECT_FALSE(label.hasHeightForWidth());
    label.resize(200, 30);
    EXPECT_EQ(label.textArea(), QRectF(0, 6, label.textArea().width(), 18));
    EXPECT_TRUE(label.textArea().adjusted(-1, 0, 1, 0).contains(Picture::of(label).ink()));
    EXPECT_GT(Picture::of(label).ink().width(), label.textArea().width() * 0.8);
    label.setAlignment(Qt::AlignCenter);
    EXPECT_NEAR(label.textArea().center().x(), 100, 1);
    label.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(label.textArea().right(), 200);
    label.setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    label.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(label.textArea().right(), 200);
}

TEST(TextLabel, ShrinksItsFontInsteadOfClippingOrEliding)
{
    TextLabel label(sentence, 14);
    label.resize(label.sizeHint());
    expectNothingClipped(label);
    for (const int width : {400, 300, 260}) {
        label.resize(width, 17);
        EXPECT_LE(label.textArea().width(), width);
        EXPECT_GT(Picture::of(label).ink().width(), width * 0.85);
        expectNothingClipped(label);
    }
}

TEST(TextLabel, WrapsWhereAllowed)
{
    TextLabel label(sentence, 14, textColor, QFont::Normal, TextLabel::Lines::asNeeded);
    label.setFixedWidth(300);
    EXPECT_TRUE(label.hasHeightForWidth());
    EXPECT_EQ(label.heightForWidth(300), 2 * 17);
    EXPECT_EQ(label.sizeHint(), QSize(300, 2 * 17));
    EXPECT_EQ(label.heightForWidth(150) % 17, 0);
    EXPECT_GE(label.heightForWidth(150), 4 * 17);
    label.resize(300, label.heightForWidth(300));
    expectNothingClipped(label);
}

TEST(TextLabel, TakesItsColorFromCurrentPalette)
{
    const PaletteChange light(lightPalette());
    TextLabel label(QStringLiteral("█"), 40);
    label.resize(label.sizeHint());
    const QPointF inside = Picture::of(label).ink().center();
    EXPECT_THAT(Picture::of(label).at(inside), isColor(textColor(lightPalette())));
    const PaletteChange dark(darkPalette());
    EXPECT_THAT(Picture::of(label).at(inside), isColor(textColor(darkPalette())));
    EXPECT_EQ(label.paintedColor(), textColor(darkPalette()));
}

} // namespace
} // namespace orlimo
