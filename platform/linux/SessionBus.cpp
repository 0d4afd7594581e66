#include "platform/linux/SessionBus.h"

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
    switch (askBus(QStringLiteral("RequestName"), {name, doNotQueue}).toUInt()) {
    case primaryOwner:
        return Ownership::taken;
    case exists:
        return Ownership::another;
    default:
        return Ownership::refused;
    }
}

QString SessionBus::ownerOf(const QString& name) const
{
    return askBus(QStringLiteral("GetNameOwner"), {name}).toString();
}

void SessionBus::put(QObject& object, const QString& path)
{
    connection.registerObject(path, &object, QDBusConnection::ExportAllSlots);
}

QDBusMessage SessionBus::call(const QDBusMessage& message, std::chrono::milliseconds limit) const
{
    return connection.call(message, QDBus::Block, static_cast<int>(limit.count()));
}

QVariant SessionBus::askBus(const QString& method, const QVariantList& arguments) const
{
    auto request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"),
        method);
    request.setArguments(arguments);
    const QDBusMessage reply = connection.call(request);
    // An error has an argument, too: its text.
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

} // namespace orlimo
