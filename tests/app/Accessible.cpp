#include "tests/app/Accessible.h"

#include "tests/support/Await.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace orlimo {

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";

} // namespace

Accessible::Accessible(
    const QDBusConnection& accessibilityBus, QString serviceName, QString objectPath)
    : bus(accessibilityBus)
    , service(std::move(serviceName))
    , path(std::move(objectPath))
{}

QVariant
Accessible::call(const char* interface, const char* method, const QVariantList& arguments) const
{
    auto message = QDBusMessage::createMethodCall(
        service, path, QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    constexpr std::chrono::milliseconds limit = defaultTimeout;
    const auto reply = bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    // An error carries its message.
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

std::string Accessible::name() const
{
    const QVariantList property{QLatin1String(accessibleInterface), QStringLiteral("Name")};
    return call("org.freedesktop.DBus.Properties", "Get", property)
        .value<QDBusVariant>()
        .variant()
        .toString()
        .toStdString();
}

std::string Accessible::role() const
{
    return call(accessibleInterface, "GetRoleName").toString().toStdString();
}

bool Accessible::is(State state) const
{
    const auto stateWords = qdbus_cast<QList<uint>>(call(accessibleInterface, "GetState"));
    return (stateWords.value(0) >> static_cast<uint>(state) & 1U) != 0;
}

QRect Accessible::area() const
{
    constexpr uint onScreen = 0;
    return qdbus_cast<QRect>(call("org.a11y.atspi.Component", "GetExtents", {onScreen}));
}

std::vector<Accessible> Accessible::children() const
{
    const auto reply = call(accessibleInterface, "GetChildren");
    if (reply.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return {};
    }
    std::vector<Accessible> found;
    const auto list = reply.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString childService;
        QDBusObjectPath childPath;
        list.beginStructure();
        list >> childService >> childPath;
        list.endStructure();
        found.emplace_back(bus, childService, childPath.path());
    }
    list.endArray();
    return found;
}

} // namespace orlimo
