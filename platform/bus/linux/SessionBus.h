#pragma once

#include "platform/threads/UptimeClock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>

namespace orlimo {

/// A private connection to the session bus, closed with the object. Calls time out at `deadline`.
/// Needs no QCoreApplication.
class SessionBus
{
public:
    /// Connects. Without a bus, isConnected() is false and every call fails.
    SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus();

    [[nodiscard]] bool isConnected() const { return connection.isConnected(); }

    /// The result of a request for a name.
    enum class Ownership {
        acquired,
        ownedByOther, ///< another connection owns it
        refused,      ///< the bus returned an error or did not reply
    };

    /// Acquires `name` for this connection unless another owns it.
    [[nodiscard]] Ownership requestName(const QString& name, Uptime deadline) const;

    /// Releases `name`. On return the bus no longer resolves it to this connection, unless it did
    /// not reply.
    void releaseName(const QString& name, Uptime deadline) const;

    /// The unique name of the connection that owns `name`; empty when there is none.
    [[nodiscard]] QString ownerOf(const QString& name, Uptime deadline) const;

    /// Exports all slots of `object`, which stays the caller's.
    void registerObject(QObject& object, const QString& path);

    void send(const QDBusMessage& message) const { connection.send(message); }

    /// The reply to `message`; an error message when there is none.
    [[nodiscard]] QDBusMessage call(const QDBusMessage& message, Uptime deadline) const;

private:
    /// The bus daemon's reply; invalid for an error or a timeout.
    [[nodiscard]] QVariant
    callBusDaemon(const QString& method, const QVariantList& arguments, Uptime deadline) const;

    QString connectionName;
    QDBusConnection connection;
};

} // namespace orlimo
