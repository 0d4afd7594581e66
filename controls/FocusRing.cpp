#include "controls/FocusRing.h"

#include "controls/Colors.h"
#include "controls/RoundedRectangle.h"

#include <QFocusEvent>
#include <QPainter>

namespace orlimo {

namespace {

constexpr double ringWidth = 2;

bool cameByKeyboard(const QFocusEvent& event)
{
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
           event.reason() == Qt::ShortcutFocusReason;
}

} // namespace

void FocusRing::attach(QWidget& control, double cornerRadius, int inset)
{
    // Owned by the control until it is first shown, then by the control's window.
    new FocusRing(control, cornerRadius, inset);
}

FocusRing::FocusRing(QWidget& surrounded, double radius, int controlInset)
    : QWidget(&surrounded)
    , control(surrounded)
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
    case QEvent::FocusIn:
        if (cameByKeyboard(*static_cast<QFocusEvent*>(event))) {
            surround();
        }
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
        hide();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (isVisible()) {
            surround();
        }
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::surround()
{
    setParent(control.window());
    const QRect area(control.mapTo(control.window(), QPoint(0, 0)), control.size());
    const int outward = reach - inset;
    setGeometry(area.adjusted(-outward, -outward, outward, outward));
    raise();
    show();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accentColor(control.palette()), ringWidth));
    constexpr double half = ringWidth / 2;
    painter.drawPath(continuousRoundedRectangle(
        QRectF(rect()).adjusted(half, half, -half, -half), cornerRadius + reach - half));
}

} // namespace orlimo
