#include "controls/accessibility/FocusRing.h"

#include "controls/painting/Colors.h"
#include "controls/painting/RoundedRectangle.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

namespace orlimo {

namespace {

constexpr double ringWidth = 2;

bool isKeyboardFocus(const QFocusEvent& event)
{
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
           event.reason() == Qt::ShortcutFocusReason;
}

/// Whether the focus only went to another window, or comes back from there.
bool isWindowFocusChange(const QFocusEvent& event)
{
    return event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
}

} // namespace

void FocusRing::attach(QWidget& control, double cornerRadius, int inset)
{
    // Owned by the control until it is first shown, then by the control's window.
    new FocusRing(control, cornerRadius, inset);
}

FocusRing::FocusRing(QWidget& targetControl, double radius, int controlInset)
    : QWidget(&targetControl)
    , control(targetControl)
    , cornerRadius(radius)
    , inset(controlInset)
{
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    control.installEventFilter(this);
    connect(&control, &QObject::destroyed, this, [this] {
        hide();
        deleteLater();
    });
}

bool FocusRing::eventFilter(QObject* /*watched*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusIn: {
        const auto& focus = *static_cast<QFocusEvent*>(event);
        if (isKeyboardFocus(focus) || (isWindowFocusChange(focus) && restoreOnActivation)) {
            showAroundControl();
        }
        break;
    }
    case QEvent::FocusOut:
        restoreOnActivation = !isHidden() && isWindowFocusChange(*static_cast<QFocusEvent*>(event));
        hide();
        break;
    case QEvent::KeyPress:
        // A modifier alone has no text and works on no control.
        if (!static_cast<QKeyEvent*>(event)->text().isEmpty() && control.hasFocus()) {
            showAroundControl();
        }
        break;
    case QEvent::Hide:
        // The window system's own hiding takes the ring along and shows it again.
        if (!event->spontaneous()) {
            hide();
        }
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (isVisible()) {
            showAroundControl();
        }
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::showAroundControl()
{
    setParent(control.window());
    const QRect area(control.mapTo(control.window(), QPoint(0, 0)), control.size());
    const int margin = outset - inset;
    setGeometry(area.adjusted(-margin, -margin, margin, margin));
    raise();
    show();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(focusRingColor(control.palette()), ringWidth));
    constexpr double half = ringWidth / 2;
    painter.drawPath(continuousRoundedRectangle(
        QRectF(rect()).adjusted(half, half, -half, -half), cornerRadius + outset - half));
}

} // namespace orlimo
