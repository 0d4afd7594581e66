#include "tests/app/Accessible.h"

#include "tests/support/Await.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gtest/gtest.h>

#include <utility>

namespace orlimo {

namespace {

const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
const QString actionInterface = QStringLiteral("org.a11y.atspi.Action");
const QString componentInterface = QStringLiteral("org.a11y.atspi.Component");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace

Accessible::Accessible(
    const QDBusConnection& accessibilityBus, QString serviceName, QString objectPath)
    : bus(accessibilityBus)
    , service(std::move(serviceName))
    , path(std::move(objectPath))
{}

QVariant Accessible::call(
    const QString& interface, const QString& method, const QVariantList& arguments) const
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    constexpr std::chrono::milliseconds limit = defaultTimeout;
    const auto reply = bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    // An error carries its message.
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

QVariant Accessible::property(const QString& interface, const QString& property) const
{
    return call(propertiesInterface, QStringLiteral("Get"), {interface, property})
        .value<QDBusVariant>()
        .variant();
}

std::string Accessible::name() const
{
    return property(accessibleInterface, QStringLiteral("Name")).toString().toStdString();
}

std::string Accessible::role() const
{
    return call(accessibleInterface, QStringLiteral("GetRoleName")).toString().toStdString();
}

bool Accessible::is(State state) const
{
    const auto stateWords =
        qdbus_cast<QList<uint>>(call(accessibleInterface, QStringLiteral("GetState")));
    const uint word = stateWords.value(0);
    return (word >> static_cast<uint>(state) & 1U) != 0;
}

QRect Accessible::area() const
{
    constexpr uint onScreen = 0;
    const auto reply = call(componentInterface, QStringLiteral("GetExtents"), {onScreen});
    if (reply.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return {};
    }
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const auto extents = reply.value<QDBusArgument>();
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

std::vector<Accessible> Accessible::children() const
{
    const auto reply = call(accessibleInterface, QStringLiteral("GetChildren"));
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

void Accessible::perform(const std::string& action) const
{
    const int count = property(actionInterface, QStringLiteral("NActions")).toInt();
    for (int index = 0; index < count; ++index) {
        if (call(actionInterface, QStringLiteral("GetName"), {index}).toString().toStdString() ==
            action) {
            EXPECT_TRUE(call(actionInterface, QStringLiteral("DoAction"), {index}).toBool());
            return;
        }
    }
    ADD_FAILURE() << name() << " has no action " << action;
}

} // namespace orlimo
