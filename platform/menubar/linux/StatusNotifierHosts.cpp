#include "platform/menubar/linux/StatusNotifierHosts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace orlimo {

namespace {

/// The service that knows the panels and the items; its interface has the same name.
QString watcherName()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString watcherPath()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

QDBusMessage registrationQuery()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName(),
        watcherPath(),
        QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call.setArguments({watcherName(), QStringLiteral("IsStatusNotifierHostRegistered")});
    // A watcher is of use only together with a panel, which starts it.
    call.setAutoStartService(false);
    return call;
}

} // namespace

StatusNotifierHosts::StatusNotifierHosts(
    std::function<void()> changeHandler, QDBusConnection sessionBus)
    : didChange(std::move(changeHandler))
    , bus(std::move(sessionBus))
    , serviceWatcher(watcherName(), bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!bus.isConnected()) {
        anyRegistered = false;
        return;
    }
    QObject::connect(
        &serviceWatcher,
        &QDBusServiceWatcher::serviceOwnerChanged,
        this,
        [this](const QString&, const QString&, const QString& owner) { watcherDidChange(owner); });
    for (const char* const signal :
         {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(
            watcherName(),
            watcherPath(),
            watcherName(),
            QString::fromLatin1(signal),
            this,
            SLOT(queryRegistration()));
    }
    queryRegistration();
}

void StatusNotifierHosts::watcherDidChange(const QString& owner)
{
    if (owner.isEmpty()) {
        ++queryCount;
        updateState(false);
    } else {
        // Whatever the previous watcher said, this one may never reply.
        updateState(std::nullopt);
        queryRegistration();
    }
}

void StatusNotifierHosts::queryRegistration()
{
    const int number = ++queryCount;
    // No timeout, since there is no alternative; if the watcher exits, the bus replies for it.
    constexpr int noTimeout = std::numeric_limits<int>::max();
    auto* const call =
        new QDBusPendingCallWatcher(bus.asyncCall(registrationQuery(), noTimeout), this);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number] {
        call->deleteLater();
        if (number == queryCount) {
            const QDBusPendingReply<QDBusVariant> reply(*call);
            updateState(!reply.isError() && reply.value().variant().toBool());
        }
    });
}

void StatusNotifierHosts::updateState(std::optional<bool> newState)
{
    if (anyRegistered != newState) {
        anyRegistered = newState;
        didChange();
    }
}

} // namespace orlimo
