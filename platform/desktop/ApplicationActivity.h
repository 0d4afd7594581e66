#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

namespace orlimo {

/// Reports whether the application is active, that is, whether one of its windows has the focus:
/// once on construction and on each change, some changes more than once. Requires Qt's application
/// object. Main thread.
class ApplicationActivity final : public QObject
{
public:
    explicit ApplicationActivity(std::function<void(bool isActive)> changeHandler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void notify();

    std::function<void(bool isActive)> didChange;
    QTimer handoverTimer;
};

} // namespace orlimo
