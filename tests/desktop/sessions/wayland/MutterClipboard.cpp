#include "tests/desktop/sessions/wayland/MutterClipboard.h"

#include "tests/support/Await.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <gtest/gtest.h>

#include <array>

#include <poll.h>
#include <unistd.h>

namespace orlimo {

namespace {

/// Calls `method` of the compositor's remote desktop object at `path`.
QDBusMessage
ask(const QDBusConnection& bus,
    const QString& path,
    const QString& interface,
    const QString& method,
    const QVariantList& arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.Mutter.RemoteDesktop"), path, interface, method);
    message.setArguments(arguments);
    return bus.call(message);
}

const QString managerInterface = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
const QString sessionInterface = QStringLiteral("org.gnome.Mutter.RemoteDesktop.Session");

/// Everything that comes out of `descriptor`. Absent when its end does not come, as where the owner
/// of the selection goes away while it hands its text over: the compositor then closes nothing, and
/// the selection is to be read again.
std::optional<std::string> readToEnd(int descriptor)
{
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        const auto limit = static_cast<int>(std::chrono::milliseconds(toolTimeout).count());
        if (::poll(&readable, 1, limit) != 1) {
            return std::nullopt;
        }
        const ssize_t count = ::read(descriptor, piece.data(), piece.size());
        if (count <= 0) {
            return count == 0 ? std::optional(text) : std::nullopt;
        }
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

MutterClipboard::MutterClipboard(const std::string& busAddress)
    : connectionName(QString::fromStdString("mutter clipboard of " + busAddress))
    , bus(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName))
{
    QDBusMessage reply;
    const auto isServed = [&] {
        reply =
            ask(bus,
                QStringLiteral("/org/gnome/Mutter/RemoteDesktop"),
                managerInterface,
                QStringLiteral("CreateSession"));
        return reply.type() == QDBusMessage::ReplyMessage;
    };
    EXPECT_TRUE(awaitWithPolling(isServed)) << reply.errorMessage().toStdString();
    remoteSession = reply.arguments().value(0).value<QDBusObjectPath>().path();
    for (const auto& [method, arguments] :
         {std::pair{QStringLiteral("Start"), QVariantList{}},
          std::pair{QStringLiteral("EnableClipboard"), QVariantList{QVariantMap{}}}})
    {
        reply = ask(bus, remoteSession, sessionInterface, method, arguments);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }
}

MutterClipboard::~MutterClipboard()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<std::string> MutterClipboard::paste(const std::string& type) const
{
    const QDBusMessage reply =
        ask(bus,
            remoteSession,
            sessionInterface,
            QStringLiteral("SelectionRead"),
            {QString::fromStdString(type)});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    return readToEnd(reply.arguments().value(0).value<QDBusUnixFileDescriptor>().fileDescriptor());
}

} // namespace orlimo
