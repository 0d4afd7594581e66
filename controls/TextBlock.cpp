#include "controls/TextBlock.h"

#include "controls/painting/LayoutMetrics.h"
#include "controls/painting/PixelGrid.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
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
constexpr int minPixelSize = 6;

/// Keeps what stands on both sides of it on one line. Invisible and without width.
constexpr QChar wordJoiner(0x2060);

/// Where the baseline stands in a line. The font that was asked for decides it alone, so that text
/// of another script, which comes from another font, stands just as high.
double baselineOf(const QFont& font, int lineHeight)
{
    const QFontMetricsF metrics(font);
    const double middle = std::round((lineHeight + metrics.ascent() - metrics.descent()) / 2);
    return std::min(middle, lineHeight - std::round(metrics.descent()));
}

/// `text` as it is laid out on several lines: none of them begins with the sign that leads from one
/// item of a path to the next, which belongs to the item before it.
QString withoutBreakBeforePathSeparators(QString text)
{
    // The joiner does not hold a space before it.
    text.replace(QLatin1String(" >"), QString(QChar::Nbsp) + u'>');
    return text.replace(u'>', QString(wordJoiner) + u'>');
}

/// What the line's glyphs cover.
template <class GlyphBounds> QRectF inkBounds(const QTextLine& line, const GlyphBounds& glyphBounds)
{
    QRectF ink;
    for (const QGlyphRun& run : line.glyphRuns()) {
        const QRawFont font = run.rawFont();
        const auto glyphs = run.glyphIndexes();
        const auto positions = run.positions();
        for (qsizetype index = 0; index < glyphs.size(); ++index) {
            ink |= glyphBounds(font, glyphs[index]).translated(positions[index]);
        }
    }
    return ink;
}

/// What a glyph covers when it is painted with one pixel a point: its edges are moved to pixels.
QRectF glyphPixelBounds(const QRawFont& font, quint32 glyph)
{
    return font.boundingRect(glyph);
}

/// What a glyph covers when its edges stay where its font has them.
QRectF glyphOutlineBounds(const QRawFont& font, quint32 glyph)
{
    return font.pathForGlyph(glyph).boundingRect();
}

/// How far what reaches from `inkStart` to `inkEnd` must be moved to stay between `start` and
/// `end`, in whole pixels of the size `pixel`. The start has priority where both do not
/// fit.
double shiftToFit(double start, double end, double inkStart, double inkEnd, double pixel = 1)
{
    // What the numbers' last places say is no pixel.
    constexpr double tolerance = 1.0 / 64;
    const double back = std::min(0.0, std::floor((end - inkEnd) / pixel + tolerance));
    const double moved = inkStart + back * pixel;
    return (back + std::max(0.0, std::ceil((start - moved) / pixel - tolerance))) * pixel;
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
    TextBlock block(withoutBreakBeforePathSeparators(text), font);
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
    block.centerLines();
    return block;
}

TextBlock TextBlock::fitted(const QString& text, const QFont& font, double width)
{
    TextBlock block(text, font);
    QFont smaller = font;
    while (block.size().width() > width && smaller.pixelSize() > minPixelSize) {
        const double ratio = width / block.size().width();
        smaller.setPixelSize(std::clamp(
            static_cast<int>(smaller.pixelSize() * ratio), minPixelSize, smaller.pixelSize() - 1));
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

QString TextBlock::line(int number) const
{
    const QTextLine line = layout->lineAt(number);
    QString text = layout->text().mid(line.textStart(), line.textLength());
    return text.remove(wordJoiner).replace(QChar::Nbsp, u' ');
}

void TextBlock::draw(QPainter& painter, QPointF topLeft) const
{
    const PixelGrid grid(painter);
    for (int number = 0; number < layout->lineCount(); ++number) {
        const QTextLine line = layout->lineAt(number);
        // Not handed to the line, which would round it to fractions of a point.
        painter.save();
        painter.translate(originOf(number, topLeft, grid));
        line.draw(&painter, QPointF());
        painter.restore();
    }
}

QPointF TextBlock::originOf(int number, QPointF topLeft, const PixelGrid& grid) const
{
    if (grid.hasPointSizedPixels()) {
        return topLeft;
    }
    const QTextLine line = layout->lineAt(number);
    const int height = metrics::lineHeight(usedFont.pixelSize());
    const QPointF top(0, number * height);
    const QSizeF pixel = grid.pixelSize();
    const QRectF lineArea = grid.snapped({topLeft + top, QSizeF(size().width(), height)});
    QPointF origin = lineArea.topLeft() - top;
    // Glyphs are painted with their baseline on a whole pixel, whichever is the nearest.
    const double baseline = line.y() + line.ascent() - top.y();
    origin.ry() += std::round(baseline / pixel.height()) * pixel.height() - baseline;
    const QRectF ink = inkBounds(line, glyphOutlineBounds).translated(origin);
    return origin +
           QPointF(
               shiftToFit(
                   lineArea.left(), lineArea.right(), ink.left(), ink.right(), pixel.width()),
               shiftToFit(
                   lineArea.top(), lineArea.bottom(), ink.top(), ink.bottom(), pixel.height()));
}

void TextBlock::centerLines()
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
        const QRectF ink = inkBounds(line, glyphPixelBounds);
        const double shift = shiftToFit(top, top + height, ink.top(), ink.bottom());
        line.setPosition(line.position() + QPointF(0, shift));
    }
}

} // namespace orlimo
