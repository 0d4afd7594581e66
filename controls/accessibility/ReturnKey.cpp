#include "controls/accessibility/ReturnKey.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>

namespace orlimo {

void ReturnKey::attach(QAbstractButton& button)
{
    // Owned by the button.
    new ReturnKey(button);
}

ReturnKey::ReturnKey(QAbstractButton& button)
    : QObject(&button)
{
    button.installEventFilter(this);
}

bool ReturnKey::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
        return false;
    }
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) {
        return false;
    }
    QKeyEvent space(
        key.type(), Qt::Key_Space, key.modifiers(), QStringLiteral(" "), key.isAutoRepeat());
    QCoreApplication::sendEvent(watched, &space);
    return true;
}

} // namespace orlimo
