#include "platform/menubar/linux/StatusNotifierHosts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace orlimo {

namespace {

/// The service that knows the panels and the items; its interface is called the same.
QString watcherName()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString watcherPath()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

QDBusMessage question()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName(),
        watcherPath(),
        QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call.setArguments({watcherName(), QStringLiteral("IsStatusNotifierHostRegistered")});
    // Only a panel brings a watcher that is of use.
    call.setAutoStartService(false);
    return call;
}

} // namespace

StatusNotifierHosts::StatusNotifierHosts(
    std::function<void()> whoIsTold, QDBusConnection sessionBus)
    : didChange(std::move(whoIsTold))
    , bus(std::move(sessionBus))
    , watchers(watcherName(), bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!bus.isConnected()) {
        answer = false;
        return;
    }
    QObject::connect(
        &watchers,
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
            SLOT(ask()));
    }
    ask();
}

void StatusNotifierHosts::watcherDidChange(const QString& owner)
{
    if (owner.isEmpty()) {
        ++questions;
        learn(false);
    } else {
        // Whatever the one before said, this one may never answer.
        learn(std::nullopt);
        ask();
    }
}

void StatusNotifierHosts::ask()
{
    const int number = ++questions;
    // Without a limit, for there is nothing to do instead: the bus answers for one who goes.
    constexpr int noLimit = std::numeric_limits<int>::max();
    auto* const call = new QDBusPendingCallWatcher(bus.asyncCall(question(), noLimit), this);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number] {
        call->deleteLater();
        if (number == questions) {
            const QDBusPendingReply<QDBusVariant> reply(*call);
            learn(!reply.isError() && reply.value().variant().toBool());
        }
    });
}

void StatusNotifierHosts::learn(std::optional<bool> newAnswer)
{
    if (answer != newAnswer) {
        answer = newAnswer;
        didChange();
    }
}

} // namespace orlimo
