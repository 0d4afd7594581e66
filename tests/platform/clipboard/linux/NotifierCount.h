#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <cstddef>

namespace orlimo {

/// Counts how often a descriptor or a timer wakes the event loop while the object exists.
class NotifierCount final : public QObject
{
public:
    NotifierCount() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::SockAct || event->type() == QEvent::Timer) {
            ++count;
        }
        return QObject::eventFilter(receiver, event);
    }

    std::size_t count = 0;
};

} // namespace orlimo
