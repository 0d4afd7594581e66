#include "tests/desktop/sessions/TrayItems.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QStringList>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

/// What `property` of an object on the bus is; nothing as long as nobody answers.
QVariant propertyOf(
    const QDBusConnection& bus,
    const QString& service,
    const QString& path,
    const QString& interface,
    const QString& property)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << interface << property;
    const QDBusMessage answer = bus.call(question);
    return answer.type() == QDBusMessage::ReplyMessage
               ? answer.arguments().value(0).value<QDBusVariant>().variant()
               : QVariant();
}

QVariant watcherProperty(const QDBusConnection& bus, const QString& property)
{
    return propertyOf(
        bus,
        QStringLiteral("org.kde.StatusNotifierWatcher"),
        QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.kde.StatusNotifierWatcher"),
        property);
}

} // namespace

TrayItems::TrayItems(const std::string& busAddress)
    : connectionName(QString::fromStdString("tray items of " + busAddress))
    , bus(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName))
{
    EXPECT_TRUE(bus.isConnected()) << busAddress;
}

TrayItems::~TrayItems()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

bool TrayItems::hasHost() const
{
    return watcherProperty(bus, QStringLiteral("IsStatusNotifierHostRegistered")).toBool();
}

std::vector<std::string> TrayItems::services() const
{
    std::vector<std::string> found;
    const auto registered =
        watcherProperty(bus, QStringLiteral("RegisteredStatusNotifierItems")).toStringList();
    for (const QString& item : registered) {
        // A watcher may name the object too.
        found.push_back(item.section(u'/', 0, 0).toStdString());
    }
    return found;
}

std::string TrayItems::titleOf(const std::string& service) const
{
    return propertyOf(
               bus,
               QString::fromStdString(service),
               QStringLiteral("/StatusNotifierItem"),
               QStringLiteral("org.kde.StatusNotifierItem"),
               QStringLiteral("Title"))
        .toString()
        .toStdString();
}

void TrayItems::activate(const std::string& service, int x, int y) const
{
    QDBusMessage click = QDBusMessage::createMethodCall(
        QString::fromStdString(service),
        QStringLiteral("/StatusNotifierItem"),
        QStringLiteral("org.kde.StatusNotifierItem"),
        QStringLiteral("Activate"));
    click << x << y;
    const QDBusMessage answer = bus.call(click);
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
}

} // namespace orlimo
