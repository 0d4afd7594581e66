#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QVariantList>

#include <string>

namespace orlimo {

/// Another program on a bus, which calls the methods by which desktops start and show ours. Asks
/// nothing else before.
class ApplicationCaller
{
public:
    /// On the bus with that address.
    explicit ApplicationCaller(const std::string& busAddress)
        : connection(QDBusConnection::connectToBus(QString::fromStdString(busAddress), name()))
    {}
    ApplicationCaller(const ApplicationCaller&) = delete;
    ApplicationCaller& operator=(const ApplicationCaller&) = delete;
    ~ApplicationCaller() { QDBusConnection::disconnectFromBus(name()); }

    [[nodiscard]] QDBusPendingCall
    call(const std::string& method, const QVariantList& arguments) const
    {
        auto message = QDBusMessage::createMethodCall(
            QStringLiteral("app.orlimo.Orlimo"),
            QStringLiteral("/app/orlimo/Orlimo"),
            QStringLiteral("org.freedesktop.Application"),
            QString::fromStdString(method));
        message.setArguments(arguments);
        return connection.asyncCall(message);
    }

    /// Its own connection.
    [[nodiscard]] const QDBusConnection& bus() const { return connection; }

private:
    static QString name() { return QStringLiteral("caller"); }

    QDBusConnection connection;
};

} // namespace orlimo
