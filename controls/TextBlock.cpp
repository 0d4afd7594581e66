#include "controls/TextBlock.h"

#include "controls/LayoutMetrics.h"

#include <QPainter>
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

/// Where the baseline stands in a line, so that the glyphs of one font size are in its middle:
/// Latin capitals and ideographs, with their parts below the baseline, then leave about equal room.
double baselineOf(const QTextLine& line, int lineHeight)
{
    return (lineHeight + line.ascent() - line.descent()) / 2;
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
    layout->beginLayout();
    int number = 0;
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width);
        const double baseline = number * height + std::round(baselineOf(line, height));
        line.setPosition({0, baseline - line.ascent()});
        ++number;
    }
    layout->endLayout();
}

} // namespace orlimo
