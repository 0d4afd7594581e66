#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>
#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace orlimo {

/// A connection of its own to the message bus at an address, closed with the object. It waits for
/// each reply.
class BusConnection
{
public:
    /// No connection is a test failure.
    explicit BusConnection(const std::string& address)
        : bus(QDBusConnection::connectToBus(QString::fromStdString(address), newName()))
    {
        EXPECT_TRUE(bus.isConnected()) << address;
    }
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection() { QDBusConnection::disconnectFromBus(bus.name()); }

    [[nodiscard]] QDBusMessage call(
        const QString& service,
        const QString& path,
        const QString& interface,
        const QString& method,
        const QVariantList& arguments = {}) const
    {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return bus.call(message);
    }

    [[nodiscard]] const QDBusConnection& connection() const { return bus; }

private:
    static QString newName()
    {
        static std::atomic<int> number = 0;
        return QStringLiteral("test %1").arg(++number);
    }

    QDBusConnection bus;
};

} // namespace orlimo
