#include "tests/desktop/sessions/StatusNotifierWatcher.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>

#include <iterator>
#include <map>
#include <utility>

namespace orlimo {

namespace {

const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

QDBusMessage
ask(const QDBusConnection& bus,
    const QString& service,
    const QString& path,
    const QString& interface,
    const QString& operation,
    const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, operation);
    message.setArguments(arguments);
    return bus.call(message);
}

std::string outcome(const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ReplyMessage ? "done"
                                                       : answer.errorMessage().toStdString();
}

QString menuPath(const QDBusConnection& bus, const QString& service)
{
    const auto answer =
        ask(bus,
            service,
            QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"),
            {itemInterface, QStringLiteral("Menu")});
    const auto value = answer.arguments().value(0).value<QDBusVariant>().variant();
    return value.value<QDBusObjectPath>().path();
}

/// The entries of a menu, by number, in the menu's order.
std::vector<std::pair<int, QString>> entries(const QDBusConnection& bus, const QString& service)
{
    constexpr int root = 0;
    constexpr int allLevels = -1;
    const auto answer =
        ask(bus,
            service,
            menuPath(bus, service),
            menuInterface,
            QStringLiteral("GetLayout"),
            {root, allLevels, QStringList{}});
    std::vector<std::pair<int, QString>> found;
    if (answer.type() != QDBusMessage::ReplyMessage) {
        return found;
    }
    const auto layout = answer.arguments().at(1).value<QDBusArgument>();
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
        found.emplace_back(number, properties.value(QStringLiteral("label")).toString());
    }
    layout.endArray();
    layout.endStructure();
    return found;
}

} // namespace

StatusNotifierWatcher::StatusNotifierWatcher(const QDBusConnection& sessionBus, bool withHost)
    : bus(sessionBus)
    , host(withHost)
{
    owners.setConnection(bus);
    owners.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(
        &owners, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& service) {
            registered.removeAll(service);
            Q_EMIT StatusNotifierItemUnregistered(service);
        });
    bus.registerObject(
        QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
    bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

void StatusNotifierWatcher::setHost(bool isPresent)
{
    host = isPresent;
    if (host) {
        Q_EMIT StatusNotifierHostRegistered();
    } else {
        Q_EMIT StatusNotifierHostUnregistered();
    }
}

std::string StatusNotifierWatcher::activate() const
{
    if (registered.size() != 1) {
        return "no item, or more than one";
    }
    return outcome(
        ask(bus,
            registered.first(),
            QStringLiteral("/StatusNotifierItem"),
            itemInterface,
            QStringLiteral("Activate"),
            {0, 0}));
}

std::string StatusNotifierWatcher::iconName() const
{
    return itemProperty(QStringLiteral("IconName")).toString().toStdString();
}

std::string StatusNotifierWatcher::iconSizes() const
{
    const auto pixmaps = itemProperty(QStringLiteral("IconPixmap")).value<QDBusArgument>();
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

QVariant StatusNotifierWatcher::itemProperty(const QString& name) const
{
    const auto answer =
        ask(bus,
            registered.value(0),
            QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"),
            {itemInterface, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

std::string StatusNotifierWatcher::menu() const
{
    std::string texts;
    for (const QString& item : registered) {
        for (const auto& [number, text] : entries(bus, item)) {
            texts += text.toStdString() + ",";
        }
    }
    return texts;
}

std::string StatusNotifierWatcher::choose(const QString& text) const
{
    for (const QString& item : registered) {
        for (const auto& [number, label] : entries(bus, item)) {
            if (label == text) {
                return outcome(
                    ask(bus,
                        item,
                        menuPath(bus, item),
                        menuInterface,
                        QStringLiteral("Event"),
                        {number,
                         QStringLiteral("clicked"),
                         QVariant::fromValue(QDBusVariant(QString())),
                         QVariant::fromValue(0U)}));
            }
        }
    }
    return "no such entry";
}

void StatusNotifierWatcher::RegisterStatusNotifierItem(const QString& service)
{
    // An item may give a path instead of its name on the bus.
    const QString name = service.startsWith(u'/') ? message().service() : service;
    registered.removeAll(name);
    registered.append(name);
    owners.addWatchedService(name);
    Q_EMIT StatusNotifierItemRegistered(name);
}

void StatusNotifierWatcher::RegisterStatusNotifierHost(const QString& /*service*/)
{
    setHost(true);
}

} // namespace orlimo
