#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <optional>

namespace orlimo {

/// Whether a panel on the session bus shows status notifier items. Queried without blocking: the
/// reply arrives in the event loop, or never if the watcher does not reply. Without a session bus
/// there is no panel, which is known at once. Main thread.
class StatusNotifierHosts final : public QObject
{
    Q_OBJECT

public:
    /// Starts the query; `changeHandler` is called in the event loop each time the result changes.
    explicit StatusNotifierHosts(
        std::function<void()> changeHandler,
        QDBusConnection sessionBus = QDBusConnection::sessionBus());

    /// Whether there is such a panel. None until a reply has arrived.
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
