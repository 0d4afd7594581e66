#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <optional>

namespace orlimo {

/// Whether a panel on the session bus shows status notifier items. Asked without waiting: the
/// answer comes with the event loop, for all that it matters never when the one who is asked does
/// not answer. Where there is no session bus the answer is no, at once. Main thread.
class StatusNotifierHosts final : public QObject
{
    Q_OBJECT

public:
    /// Asks at once; `changeHandler` is called in the event loop, each time the answer is another
    /// one.
    explicit StatusNotifierHosts(
        std::function<void()> changeHandler,
        QDBusConnection sessionBus = QDBusConnection::sessionBus());

    /// Whether there is such a panel. None while nobody has answered.
    [[nodiscard]] std::optional<bool> isAnyRegistered() const { return anyRegistered; }

private:
    Q_SLOT void queryRegistration();
    void watcherDidChange(const QString& owner);
    void updateState(std::optional<bool> newState);

    std::function<void()> didChange;
    QDBusConnection bus;
    QDBusServiceWatcher serviceWatcher;
    std::optional<bool> anyRegistered;
    int queryCount = 0;
};

} // namespace orlimo
