#include "controls/TextBlock.h"

#include "controls/painting/LayoutMetrics.h"
#include "tests/support/widgets/Picture.h"

#include <QFontMetricsF>
#include <QPainter>
#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace orlimo {
namespace {

QFont fontOf(int pixelSize)
{
    QFont font;
    font.setPixelSize(pixelSize);
    return font;
}

const QString sentence =
    QStringLiteral("Full Disk Access is required to read the verification code from Messages.");

/// Where the ink of a text begins and ends in the height of its block.
QRectF inkOf(const TextBlock& block)
{
    constexpr int margin = 30;
    const QSize size = block.size().toSize() + 2 * QSize(margin, margin);
    return Picture::drawn(
               size,
               1,
               [&block](QPainter& painter) { block.draw(painter, QPointF(margin, margin)); })
        .ink()
        .translated(-margin, -margin);
}

TEST(LineHeight, IsFifthMoreThanFontSize)
{
    for (const auto& [fontSize, height] :
         std::map<int, int>{{11, 13}, {13, 16}, {14, 17}, {15, 18}, {24, 29}, {28, 34}})
    {
        EXPECT_EQ(metrics::lineHeight(fontSize), height);
    }
}

TEST(TextBlock, OfOneLineIsAsWideAsItsText)
{
    const QFont font = fontOf(13);
    const TextBlock block(sentence, font);
    EXPECT_EQ(block.lineCount(), 1);
    EXPECT_EQ(block.size().height(), 16);
    EXPECT_NEAR(block.size().width(), QFontMetricsF(font).horizontalAdvance(sentence), 1.5);
    EXPECT_EQ(TextBlock(QString(), fontOf(14)).size(), QSizeF(0, 17)) << "one line without text";
    EXPECT_EQ(TextBlock(QString(), fontOf(14)).lineCount(), 1);
    EXPECT_EQ(TextBlock::wrapped(QStringLiteral("Copy"), fontOf(14), 420).lineCount(), 1);
}

TEST(TextBlock, IsEquallyHighInEveryScriptWithSameBaseline)
{
    for (const char16_t* text : {u"Copy", u"コピー", u"Übergröße", u"복사", u"複製"}) {
        EXPECT_EQ(TextBlock(QString::fromUtf16(text), fontOf(15)).size().height(), 18);
    }
    const QRectF alone = inkOf(TextBlock(QStringLiteral("l"), fontOf(15)));
    const QRectF mixed = inkOf(TextBlock(QStringLiteral("l一"), fontOf(15)));
    EXPECT_EQ(mixed.top(), alone.top());
    EXPECT_EQ(mixed.bottom(), alone.bottom());
}

TEST(TextBlock, WrapsAtWordsAndKeepsItsWidth)
{
    for (const int width : {420, 300, 120}) {
        const TextBlock block = TextBlock::wrapped(sentence, fontOf(14), width);
        EXPECT_GT(block.lineCount(), 1) << width;
        EXPECT_LE(block.size().width(), width);
        EXPECT_EQ(block.size().height(), block.lineCount() * 17);
    }
}

TEST(TextBlock, WrapsTextWithoutSpacesAndBalancesItsLines)
{
    const QFont font = fontOf(14);
    const TextBlock unspaced = TextBlock::wrapped(QString(80, u'字'), font, 420);
    EXPECT_EQ(unspaced.lineCount(), 3);
    EXPECT_LE(unspaced.size().width(), 420);
    const double whole = TextBlock(sentence, font).size().width();
    // A width that all but the last word would fill.
    const TextBlock block = TextBlock::wrapped(sentence, font, whole - 5);
    EXPECT_EQ(block.lineCount(), 2);
    EXPECT_LT(block.size().width(), whole * 0.65);
}

/// A path of items in a text, and where it could be broken.
class TextBlockPath : public testing::TestWithParam<const char16_t*>
{};

TEST_P(TextBlockPath, HasNoLineThatBeginsWithSeparator)
{
    const QString text = QString::fromUtf16(GetParam());
    const QFont font = fontOf(14);
    const QString sign = QStringLiteral(">");
    const double whole = TextBlock(text, font).size().width();
    for (double width = whole; width > 240; width -= 4) {
        const TextBlock block = TextBlock::wrapped(text, font, width);
        for (int number = 0; number < block.lineCount(); ++number) {
            EXPECT_FALSE(block.line(number).startsWith(sign)) << width << ", line " << number;
        }
    }
    EXPECT_EQ(TextBlock::wrapped(text, font, whole + 1).size().width(), std::ceil(whole));
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    TextBlockPath,
    testing::Values(
        u"open System Preferences > Security & Privacy > Full Disk Access and allow it.",
        u"「システム設定」>「プライバシーとセキュリティ」>「フルディスクアクセス」を開き",
        u"打开“系统设置”>“隐私与安全性”>“完全磁盘访问权限”"));

TEST(TextBlock, FittedTakesLargestFontThatFits)
{
    const QFont font = fontOf(24);
    const QSizeF natural = TextBlock(sentence, font).size();
    EXPECT_EQ(TextBlock::fitted(sentence, font, natural.width()).size(), natural);
    const double width = natural.width() * 0.7;
    const TextBlock block = TextBlock::fitted(sentence, font, width);
    EXPECT_LE(block.size().width(), width);
    EXPECT_GT(TextBlock(sentence, fontOf(block.font().pixelSize() + 2)).size().width(), width);
    EXPECT_EQ(TextBlock::fitted(sentence, font, 1).font().pixelSize(), 6) << "the minimum";
}

TEST(TextBlock, DrawsInPainterPen)
{
    const TextBlock block(QStringLiteral("█"), fontOf(40));
    const Picture picture = Picture::drawn(QSize(60, 60), 1, [&block](QPainter& painter) {
        painter.setPen(Qt::red);
        block.draw(painter, QPointF(5, 5));
    });
    EXPECT_THAT(picture.at(picture.ink().center()), isColor(Qt::red));
}

TEST(TextBlock, CentersWrappedLinesInItsWidth)
{
    const TextBlock block =
        TextBlock::wrapped(QStringLiteral("wwwwwwwwwwwwww ii"), fontOf(14), 150);
    ASSERT_EQ(block.lineCount(), 2);
    const QSize size = block.size().toSize();
    const Picture second = Picture::drawn(QSize(size.width(), 17), 1, [&block](QPainter& painter) {
        block.draw(painter, QPointF(0, -17));
    });
    EXPECT_NEAR(second.ink().center().x(), size.width() / 2.0, 2);
}

} // namespace
} // namespace orlimo
