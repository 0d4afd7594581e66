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

QVariant Accessible::ask(
    const QString& interface, const QString& question, const QVariantList& arguments) const
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, question);
    message.setArguments(arguments);
    constexpr std::chrono::milliseconds limit = defaultTimeout;
    const auto answer = bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    // What an error carries are its words.
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
}

QVariant Accessible::property(const QString& interface, const QString& property) const
{
    return ask(propertiesInterface, QStringLiteral("Get"), {interface, property})
        .value<QDBusVariant>()
        .variant();
}

std::string Accessible::name() const
{
    return property(accessibleInterface, QStringLiteral("Name")).toString().toStdString();
}

std::string Accessible::role() const
{
    return ask(accessibleInterface, QStringLiteral("GetRoleName")).toString().toStdString();
}

bool Accessible::is(State state) const
{
    const auto words =
        qdbus_cast<QList<uint>>(ask(accessibleInterface, QStringLiteral("GetState")));
    const uint word = words.value(0);
    return (word >> static_cast<uint>(state) & 1U) != 0;
}

QRect Accessible::area() const
{
    constexpr uint onScreen = 0;
    const auto answer = ask(componentInterface, QStringLiteral("GetExtents"), {onScreen});
    if (answer.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return {};
    }
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const auto extents = answer.value<QDBusArgument>();
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

std::vector<Accessible> Accessible::children() const
{
    const auto answer = ask(accessibleInterface, QStringLiteral("GetChildren"));
    if (answer.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return {};
    }
    std::vector<Accessible> found;
    const auto list = answer.value<QDBusArgument>();
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
        if (ask(actionInterface, QStringLiteral("GetName"), {index}).toString().toStdString() ==
            action) {
            EXPECT_TRUE(ask(actionInterface, QStringLiteral("DoAction"), {index}).toBool());
            return;
        }
    }
    ADD_FAILURE() << name() << " has no action " << action;
}

} // namespace orlimo
