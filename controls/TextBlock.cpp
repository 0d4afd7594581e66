#include "controls/TextBlock.h"

#include "controls/LayoutMetrics.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orlimo {

namespace {

/// Wider than any text of a window, and small enough for the layout's fixed-point numbers.
constexpr double unlimitedWidth = 100'000;

/// The size below which shrinking a text further would not help anybody.
constexpr int smallestPixelSize = 6;

/// Where the baseline stands in a line. The font that was asked for decides it alone, so that text
/// of another script, which comes from another font, stands just as high.
double baselineOf(const QFont& font, int lineHeight)
{
    const QFontMetricsF metrics(font);
    const double middle = std::round((lineHeight + metrics.ascent() - metrics.descent()) / 2);
    return std::min(middle, lineHeight - std::round(metrics.descent()));
}

/// What the line's glyphs cover.
QRectF inkOf(const QTextLine& line)
{
    QRectF ink;
    for (const QGlyphRun& run : line.glyphRuns()) {
        const auto glyphs = run.glyphIndexes();
        const auto positions = run.positions();
        for (qsizetype index = 0; index < glyphs.size(); ++index) {
            ink |= run.rawFont().boundingRect(glyphs[index]).translated(positions[index]);
        }
    }
    return ink;
}

/// How far up or down a line must be moved for its accents and descenders to stay between `top` and
/// `bottom`.
double shiftBetween(double top, double bottom, const QRectF& ink)
{
    const double upward = std::min(0.0, std::floor(bottom - ink.bottom()));
    return upward + std::max(0.0, std::ceil(top - ink.top() - upward));
}

} // namespace

TextBlock::TextBlock(const QString& text, const QFont& font)
    : usedFont(font)
    , layout(std::make_unique<QTextLayout>(text, font))
{
    layOut(unlimitedWidth, QTextOption::NoWrap);
}

TextBlock TextBlock::wrapped(const QString& text, const QFont& font, double width)
{
    TextBlock block(text, font);
    constexpr auto wrapMode = QTextOption::WrapAtWordBoundaryOrAnywhere;
    block.layOut(width, wrapMode);
    const int lineCount = block.lineCount();
    double tooNarrow = 0;
    double wideEnough = width;
    while (lineCount > 1 && wideEnough - tooNarrow > 1) {
        const double middle = std::floor((tooNarrow + wideEnough) / 2);
        block.layOut(middle, wrapMode);
        (block.lineCount() > lineCount ? tooNarrow : wideEnough) = middle;
    }
    block.layOut(wideEnough, wrapMode);
    block.centreLines();
    return block;
}

TextBlock TextBlock::fitted(const QString& text, const QFont& font, double width)
{
    TextBlock block(text, font);
    QFont smaller = font;
    while (block.size().width() > width && smaller.pixelSize() > smallestPixelSize) {
        const double share = width / block.size().width();
        smaller.setPixelSize(std::clamp(
            static_cast<int>(smaller.pixelSize() * share),
            smallestPixelSize,
            smaller.pixelSize() - 1));
        block = TextBlock(text, smaller);
    }
    return block;
}

QSizeF TextBlock::size() const
{
    double width = 0;
    for (int number = 0; number < layout->lineCount(); ++number) {
        width = std::max(width, layout->lineAt(number).naturalTextWidth());
    }
    return {
        std::ceil(width),
        static_cast<double>(lineCount() * metrics::lineHeight(usedFont.pixelSize()))};
}

int TextBlock::lineCount() const
{
    return std::max(1, layout->lineCount());
}

void TextBlock::draw(QPainter& painter, QPointF topLeft) const
{
    for (int number = 0; number < layout->lineCount(); ++number) {
        layout->lineAt(number).draw(&painter, topLeft);
    }
}

void TextBlock::centreLines()
{
    const double width = size().width();
    for (int number = 0; number < layout->lineCount(); ++number) {
        QTextLine line = layout->lineAt(number);
        line.setPosition({std::floor((width - line.naturalTextWidth()) / 2), line.y()});
    }
}

void TextBlock::layOut(double width, QTextOption::WrapMode wrapMode)
{
    QTextOption option;
    option.setWrapMode(wrapMode);
    layout->setTextOption(option);
    const int height = metrics::lineHeight(usedFont.pixelSize());
    const double baseline = baselineOf(usedFont, height);
    layout->beginLayout();
    int number = 0;
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, number * height + baseline - line.ascent()});
        ++number;
    }
    layout->endLayout();
    for (number = 0; number < layout->lineCount(); ++number) {
        QTextLine line = layout->lineAt(number);
        const double top = number * height;
        line.setPosition(
            line.position() + QPointF(0, shiftBetween(top, top + height, inkOf(line))));
    }
}

} // namespace orlimo
