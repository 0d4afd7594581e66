#include "tests/desktop/sessions/TrayItems.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>
#include <gtest/gtest.h>

#include <atomic>

namespace orlimo {

namespace {

const QString watcherInterface = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

/// Several may be connected to one bus.
QString newConnectionName()
{
    static std::atomic<int> number = 0;
    return QStringLiteral("tray items %1").arg(++number);
}

} // namespace

TrayItems::TrayItems(const std::string& busAddress)
    : connectionName(newConnectionName())
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
    return property(
               watcherInterface, watcherInterface, QStringLiteral("IsStatusNotifierHostRegistered"))
        .toBool();
}

std::vector<std::string> TrayItems::services() const
{
    std::vector<std::string> found;
    const auto registered = property(
        watcherInterface, watcherInterface, QStringLiteral("RegisteredStatusNotifierItems"));
    for (const QString& item : registered.toStringList()) {
        // A watcher may name the object too.
        found.push_back(item.section(u'/', 0, 0).toStdString());
    }
    return found;
}

std::string TrayItems::titleOf(const std::string& service) const
{
    return itemProperty(service, QStringLiteral("Title")).toString().toStdString();
}

std::string TrayItems::iconNameOf(const std::string& service) const
{
    return itemProperty(service, QStringLiteral("IconName")).toString().toStdString();
}

std::string TrayItems::iconSizesOf(const std::string& service) const
{
    const auto pixmaps = itemProperty(service, QStringLiteral("IconPixmap")).value<QDBusArgument>();
    std::string sizes;
    pixmaps.beginArray();
    while (!pixmaps.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        pixmaps.beginStructure();
        pixmaps >> width >> height >> pixels;
        pixmaps.endStructure();
        sizes += std::to_string(width) + ",";
    }
    pixmaps.endArray();
    return sizes;
}

void TrayItems::activate(const std::string& service, int x, int y) const
{
    const QDBusMessage reply = call(
        QString::fromStdString(service),
        QStringLiteral("/StatusNotifierItem"),
        itemInterface + QStringLiteral(".Activate"),
        {x, y});
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
}

std::string TrayItems::menuOf(const std::string& service) const
{
    std::string texts;
    for (const auto& [number, text] : entries(service)) {
        texts += text + ",";
    }
    return texts;
}

void TrayItems::choose(const std::string& service, const std::string& text) const
{
    for (const auto& [number, label] : entries(service)) {
        if (label == text) {
            const QDBusMessage reply = call(
                QString::fromStdString(service),
                menuPath(service),
                menuInterface + QStringLiteral(".Event"),
                {number,
                 QStringLiteral("clicked"),
                 QVariant::fromValue(QDBusVariant(QString())),
                 QVariant::fromValue(0U)});
            EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage);
            return;
        }
    }
    ADD_FAILURE() << "no entry " << text << " in " << menuOf(service);
}

QDBusMessage TrayItems::call(
    const QString& service,
    const QString& path,
    const QString& method,
    const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, path, method.section(u'.', 0, -2), method.section(u'.', -1));
    message.setArguments(arguments);
    return bus.call(message);
}

/// Nothing as long as nobody responds.
QVariant
TrayItems::property(const QString& service, const QString& interface, const QString& name) const
{
    const QDBusMessage reply = call(
        service,
        u'/' + interface.section(u'.', -1),
        QStringLiteral("org.freedesktop.DBus.Properties.Get"),
        {interface, name});
    return reply.type() == QDBusMessage::ReplyMessage
               ? reply.arguments().value(0).value<QDBusVariant>().variant()
               : QVariant();
}

QVariant TrayItems::itemProperty(const std::string& service, const QString& name) const
{
    return property(QString::fromStdString(service), itemInterface, name);
}

QString TrayItems::menuPath(const std::string& service) const
{
    return itemProperty(service, QStringLiteral("Menu")).value<QDBusObjectPath>().path();
}

std::vector<std::pair<int, std::string>> TrayItems::entries(const std::string& service) const
{
    constexpr int root = 0;
    constexpr int allLevels = -1;
    const QDBusMessage reply = call(
        QString::fromStdString(service),
        menuPath(service),
        menuInterface + QStringLiteral(".GetLayout"),
        {root, allLevels, QStringList{}});
    std::vector<std::pair<int, std::string>> found;
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return found;
    }
    const auto layout = reply.arguments().at(1).value<QDBusArgument>();
    int number = 0;
    QVariantMap properties;
    layout.beginStructure();
    layout >> number >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        const auto entry = child.variant().value<QDBusArgument>();
        entry.beginStructure();
        entry >> number >> properties;
        entry.endStructure();
        found.emplace_back(
            number, properties.value(QStringLiteral("label")).toString().toStdString());
    }
    layout.endArray();
    layout.endStructure();
    return found;
}

} // namespace orlimo
