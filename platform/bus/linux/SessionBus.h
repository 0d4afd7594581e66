#pragma once

#include "platform/threads/UptimeClock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>

namespace orlimo {

/// A connection to the session bus that nothing else in the program uses, closed with the object.
/// Its calls wait for the answer until `deadline`, after which there is none. Needs no application
/// object of the toolkit.
class SessionBus
{
public:
    /// Connects. Where there is no bus the connection is not connected, and every call fails.
    SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus();

    [[nodiscard]] bool isConnected() const { return connection.isConnected(); }

    /// What became of a name that was asked for.
    enum class Ownership {
        acquired,
        ownedByOther, ///< somebody else has it
        refused,      ///< the bus does not give it, or does not answer
    };

    /// Takes `name` for this connection unless somebody else has it.
    [[nodiscard]] Ownership requestName(const QString& name, Uptime deadline) const;

    /// Gives `name` back. When this returns nobody finds it at this connection any more, unless the
    /// bus did not answer.
    void releaseName(const QString& name, Uptime deadline) const;

    /// The connection that has `name`, by the name that no other one ever has; empty when there is
    /// none.
    [[nodiscard]] QString ownerOf(const QString& name, Uptime deadline) const;

    /// Puts `object`, which stays the caller's, on the bus with all its slots.
    void registerObject(QObject& object, const QString& path);

    void send(const QDBusMessage& message) const { connection.send(message); }

    /// The reply to `message`, an error when there is none.
    [[nodiscard]] QDBusMessage call(const QDBusMessage& message, Uptime deadline) const;

private:
    /// The bus's own answer; invalid when it answers with an error or not at all.
    [[nodiscard]] QVariant
    callBusDaemon(const QString& method, const QVariantList& arguments, Uptime deadline) const;

    QString connectionName;
    QDBusConnection connection;
};

} // namespace orlimo
