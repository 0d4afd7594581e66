#include "controls/TextLabel.h"

#include "controls/TextBlock.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace orlimo {

TextLabel::TextLabel(
    const QString& text,
    int fontPixelSize,
    PaletteColor textColor,
    QFont::Weight weight,
    Lines lineCount)
    : QLabel(text)
    , color(textColor)
    , lines(lineCount)
{
    QFont systemFont;
    systemFont.setPixelSize(fontPixelSize);
    systemFont.setWeight(weight);
    setFont(systemFont);
    setTextFormat(Qt::PlainText);
    setSizePolicy(
        QSizePolicy::Preferred, lines == Lines::one ? QSizePolicy::Fixed : QSizePolicy::Preferred);
}

QSize TextLabel::sizeHint() const
{
    if (lines == Lines::one) {
        return TextBlock(text(), font()).size().toSize();
    }
    const int width = maximumWidth() < QWIDGETSIZE_MAX ? maximumWidth() : 0;
    return width > 0 ? QSize(width, heightForWidth(width))
                     : TextBlock(text(), font()).size().toSize();
}

QSize TextLabel::minimumSizeHint() const
{
    return {0, lines == Lines::one ? sizeHint().height() : 0};
}

bool TextLabel::hasHeightForWidth() const
{
    return lines == Lines::asNeeded;
}

int TextLabel::heightForWidth(int width) const
{
    // A layout asks for the width that it has, and then gives no more than the label takes.
    const int effectiveWidth = std::min(width, maximumWidth());
    return static_cast<int>(TextBlock::wrapped(text(), font(), effectiveWidth).size().height());
}

TextBlock TextLabel::block() const
{
    return lines == Lines::one ? TextBlock::fitted(text(), font(), width())
                               : TextBlock::wrapped(text(), font(), width());
}

QRectF TextLabel::textArea() const
{
    return areaOf(block());
}

QRectF TextLabel::areaOf(const TextBlock& textBlock) const
{
    const QSizeF size = textBlock.size();
    const Qt::Alignment visual = QStyle::visualAlignment(layoutDirection(), alignment());
    double left = 0;
    if (visual.testFlag(Qt::AlignHCenter)) {
        left = std::floor((width() - size.width()) / 2);
    } else if (visual.testFlag(Qt::AlignRight)) {
        left = width() - size.width();
    }
    return {QPointF(left, std::floor((height() - size.height()) / 2)), size};
}

void TextLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(paintedColor());
    const TextBlock textBlock = block();
    textBlock.draw(painter, areaOf(textBlock).topLeft());
}

} // namespace orlimo
