#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace orlimo {

/// How many events of one type were delivered to anything in this process while the object lives.
class EventCount : public QObject
{
public:
    explicit EventCount(QEvent::Type eventType)
        : type(eventType)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    [[nodiscard]] int count() const { return delivered; }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        delivered += event->type() == type ? 1 : 0;
        return false;
    }

private:
    QEvent::Type type;
    int delivered = 0;
};

} // namespace orlimo
