#include "controls/accessibility/InitialFocus.h"

#include <QEvent>

namespace orlimo {

void InitialFocus::attach(QWidget& window)
{
    // Owned by the window.
    new InitialFocus(window);
}

InitialFocus::InitialFocus(QWidget& targetWindow)
    : QObject(&targetWindow)
    , window(targetWindow)
{
    window.installEventFilter(this);
}

bool InitialFocus::eventFilter(QObject* /*watched*/, QEvent* event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        window.setFocus();
    } else if (event->type() == QEvent::WindowActivate) {
        // A Wayland compositor may wait for a frame drawn for the active window before it shows the
        // window, and Qt draws one only where something has changed.
        window.update(0, 0, 1, 1);
    }
    return false;
}

} // namespace orlimo
