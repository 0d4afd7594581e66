#include "tests/support/EventCount.h"

#include <QCoreApplication>

namespace orlimo {

EventCount::EventCount(QEvent::Type eventType)
    : type(eventType)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool EventCount::eventFilter(QObject* /*watched*/, QEvent* event)
{
    if (event->type() == type) {
        ++delivered;
    }
    return false;
}

} // namespace orlimo
