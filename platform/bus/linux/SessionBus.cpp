#include "platform/bus/linux/SessionBus.h"

#include <QDBusError>

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

SessionBus::Ownership SessionBus::requestName(const QString& name, Uptime deadline) const
{
    constexpr std::uint32_t doNotQueue = 4;
    constexpr std::uint32_t primaryOwner = 1;
    constexpr std::uint32_t exists = 3;
    switch (callBusDaemon(QStringLiteral("RequestName"), {name, doNotQueue}, deadline).toUInt()) {
    case primaryOwner:
        return Ownership::acquired;
    case exists:
        return Ownership::ownedByOther;
    default:
        return Ownership::refused;
    }
}

void SessionBus::releaseName(const QString& name, Uptime deadline) const
{
    static_cast<void>(callBusDaemon(QStringLiteral("ReleaseName"), {name}, deadline));
}

QString SessionBus::ownerOf(const QString& name, Uptime deadline) const
{
    return callBusDaemon(QStringLiteral("GetNameOwner"), {name}, deadline).toString();
}

void SessionBus::registerObject(QObject& object, const QString& path)
{
    connection.registerObject(path, &object, QDBusConnection::ExportAllSlots);
}

QDBusMessage SessionBus::call(const QDBusMessage& message, Uptime deadline) const
{
    const auto remaining =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - currentUptime());
    if (remaining <= std::chrono::milliseconds::zero()) {
        // A negative timeout would mean the default one.
        return QDBusMessage::createError(QDBusError::NoReply, QString());
    }
    return connection.call(message, QDBus::Block, static_cast<int>(remaining.count()));
}

QVariant SessionBus::callBusDaemon(
    const QString& method, const QVariantList& arguments, Uptime deadline) const
{
    auto request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"),
        method);
    request.setArguments(arguments);
    const QDBusMessage reply = call(request, deadline);
    // An error has an argument too: its text.
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

} // namespace orlimo
