#include "platform/linux/SessionBus.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace orlimo {

SessionBus::SessionBus()
    : connectionName(QStringLiteral("orlimo-%1").arg(reinterpret_cast<std::uintptr_t>(this)))
    , connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{}

SessionBus::~SessionBus()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

SessionBus::Ownership SessionBus::take(const QString& name) const
{
    constexpr std::uint32_t doNotQueue = 4;
    constexpr std::uint32_t primaryOwner = 1;
    constexpr std::uint32_t exists = 3;
    const QDBusMessage reply = askBus(QStringLiteral("RequestName"), {name, doNotQueue});
    switch (reply.arguments().value(0).toUInt()) {
    case primaryOwner:
        return Ownership::taken;
    case exists:
        return Ownership::another;
    default:
        return Ownership::refused;
    }
}

bool SessionBus::hasOwner(const QString& name) const
{
    return askBus(QStringLiteral("NameHasOwner"), {name}).arguments().value(0).toBool();
}

void SessionBus::put(QObject& object, const QString& path)
{
    connection.registerObject(path, &object, QDBusConnection::ExportAllSlots);
}

QDBusMessage SessionBus::call(const QDBusMessage& message, const QDeadlineTimer& deadline) const
{
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline.remainingTimeAsDuration());
    return connection.call(message, QDBus::Block, std::max(1, static_cast<int>(left.count())));
}

QDBusMessage SessionBus::askBus(const QString& method, const QVariantList& arguments) const
{
    auto request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"),
        method);
    request.setArguments(arguments);
    return connection.call(request);
}

} // namespace orlimo
