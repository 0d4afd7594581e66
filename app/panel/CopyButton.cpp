#include "app/panel/CopyButton.h"

#include "app/panel/CopyButtonStyle.h"
#include "controls/TextBlock.h"
#include "controls/accessibility/FocusRing.h"
#include "controls/accessibility/ReturnKey.h"
#include "controls/painting/Colors.h"
#include "controls/painting/LayoutMetrics.h"
#include "platform/threads/MainThread.h"

#include <QHoverEvent>
#include <QPainter>

#include <cmath>

namespace orlimo {

CopyButton::CopyButton(const QString& text)
    : QPushButton(text)
{
    QFont systemFont;
    systemFont.setPixelSize(fontPixelSize);
    setFont(systemFont);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(styledSize());
    setAttribute(Qt::WA_Hover);
    FocusRing::attach(*this, pillCornerRadius, metrics::defaultPadding);
    ReturnKey::attach(*this);
}

QSize CopyButton::sizeHint() const
{
    return styledSize();
}

QSize CopyButton::styledSize() const
{
    return CopyButtonStyle::makeBody({.label = label(), .isPressed = false}).size;
}

QRect CopyButton::pillArea() const
{
    return {QPoint(metrics::defaultPadding, metrics::defaultPadding), pillSize};
}

bool CopyButton::hitButton(const QPoint& position) const
{
    return pillArea().contains(position);
}

bool CopyButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        setHovered(pillArea().contains(static_cast<QHoverEvent*>(event)->position().toPoint()));
        break;
    case QEvent::HoverLeave:
    case QEvent::Hide:
        setHovered(false);
        break;
    default:
        break;
    }
    return QPushButton::event(event);
}

void CopyButton::setHovered(bool hovered)
{
    requireMainThread();
    if (isHoverCopyButton != hovered) {
        isHoverCopyButton = hovered;
        update();
    }
}

DrawnView CopyButton::label() const
{
    QColor background = accentColor(palette());
    background.setAlphaF(isHoverCopyButton ? static_cast<float>(hoverOpacity) : 1.0F);
    constexpr int margin = metrics::defaultSpacing;
    auto draw = [background, title = text(), titleFont = font()](QPainter& painter) {
        painter.fillRect(QRect(QPoint(), pillSize), background);
        const TextBlock block = TextBlock::fitted(title, titleFont, pillSize.width() - 2 * margin);
        const QSizeF size = block.size();
        block.draw(
            painter,
            {std::floor((pillSize.width() - size.width()) / 2),
             std::floor((pillSize.height() - size.height()) / 2)});
    };
    return clippedToRoundedRectangle({.size = pillSize, .draw = std::move(draw)}, pillCornerRadius);
}

void CopyButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    CopyButtonStyle::makeBody({.label = label(), .isPressed = isDown()}).draw(painter);
}

} // namespace orlimo
