#pragma once

#include <QEvent>
#include <QObject>

namespace orlimo {

/// How many events of one type were delivered to anything in this process while the object lives.
class EventCount : public QObject
{
public:
    explicit EventCount(QEvent::Type eventType);

    [[nodiscard]] int count() const { return delivered; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QEvent::Type type;
    int delivered = 0;
};

} // namespace orlimo
