#include "controls/TextButton.h"

#include "controls/SymbolLabel.h"
#include "controls/TextBlock.h"
#include "controls/accessibility/FocusRing.h"
#include "controls/accessibility/ReturnKey.h"
#include "controls/painting/LayoutMetrics.h"
#include "controls/painting/PixelGrid.h"
#include "controls/painting/RoundedRectangle.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orlimo {

TextButton::TextButton(const QString& text, Look buttonLook)
    : QPushButton(text)
    , appearance(std::move(buttonLook))
{
    QFont systemFont;
    systemFont.setPixelSize(appearance.fontPixelSize);
    setFont(systemFont);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    FocusRing::attach(*this, cornerRadius);
    ReturnKey::attach(*this);
}

QSize TextButton::sizeHint() const
{
    const QSize label = TextBlock(text(), font()).size().toSize();
    return QSize(label.width() + symbolAdvance(), label.height()).grownBy(margins());
}

QSize TextButton::minimumSizeHint() const
{
    const QMargins around = margins();
    return {around.left() + symbolAdvance() + around.right(), sizeHint().height()};
}

QMargins TextButton::margins() const
{
    return appearance.style == Style::bordered ? appearance.padding + bezel : appearance.padding;
}

QSize TextButton::symbolSize() const
{
    return appearance.systemSymbolName.isEmpty()
               ? QSize()
               : appearance.symbols.size(appearance.systemSymbolName, appearance.fontPixelSize);
}

int TextButton::symbolAdvance() const
{
    const QSize symbol = symbolSize();
    return symbol.isEmpty() ? 0 : symbol.width() + SymbolLabel::gap;
}

QRectF TextButton::labelArea() const
{
    return areaOf(block());
}

TextBlock TextButton::block() const
{
    const QMargins around = margins();
    return TextBlock::fitted(
        text(), font(), width() - around.left() - around.right() - symbolAdvance());
}

QRectF TextButton::areaOf(const TextBlock& textBlock) const
{
    const QRectF inside = QRectF(rect()).marginsRemoved(margins());
    const double width = symbolAdvance() + textBlock.size().width();
    return {
        std::floor(inside.left() + (inside.width() - width) / 2),
        inside.top(),
        width,
        inside.height()};
}

QColor TextButton::surface() const
{
    if (isDown()) {
        return textColor(palette(), 0.16F);
    }
    if (appearance.style == Style::bordered) {
        return textColor(palette(), underMouse() ? 0.12F : 0.08F);
    }
    return underMouse() ? textColor(palette(), 0.06F) : QColor(Qt::transparent);
}

bool TextButton::hasOutline() const
{
    // In a high-contrast palette the faint surface alone would not show the pointer or a press.
    return appearance.style == Style::bordered ||
           (isHighContrast(palette()) && (isDown() || underMouse()));
}

void TextButton::enterEvent(QEnterEvent* event)
{
    QPushButton::enterEvent(event);
    update();
}

void TextButton::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    update();
}

void TextButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid(painter);
    const QRectF area = grid.snapped(rect());
    painter.fillPath(continuousRoundedRectangle(area, cornerRadius), surface());
    if (hasOutline()) {
        const double half = grid.lineWidth() / 2;
        painter.setPen(QPen(controlBorderColor(palette()), grid.lineWidth()));
        painter.drawPath(continuousRoundedRectangle(
            area.adjusted(half, half, -half, -half), cornerRadius - half));
    }

    const TextBlock textBlock = block();
    const QRectF label = areaOf(textBlock);
    const QColor color = textColor(palette());
    const int advance = symbolAdvance();
    if (advance > 0) {
        const QSize symbol = symbolSize();
        const QRect symbolRect(
            QPoint(
                static_cast<int>(label.left()),
                static_cast<int>(label.center().y() - symbol.height() / 2.0)),
            symbol);
        painter.drawPixmap(
            QStyle::visualRect(layoutDirection(), label.toRect(), symbolRect).topLeft(),
            appearance.symbols.draw(
                appearance.systemSymbolName, appearance.fontPixelSize, color, devicePixelRatioF()));
    }
    painter.setPen(color);
    const double left =
        layoutDirection() == Qt::RightToLeft ? label.left() : label.left() + advance;
    textBlock.draw(painter, {left, std::floor(label.center().y() - textBlock.size().height() / 2)});
}

} // namespace orlimo
