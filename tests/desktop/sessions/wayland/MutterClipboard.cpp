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

/// Asks for `method` of the compositor's remote desktop object at `path`.
QDBusMessage
ask(const QDBusConnection& bus,
    const QString& path,
    const QString& interface,
    const QString& method,
    const QVariantList& arguments = {})
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.Mutter.RemoteDesktop"), path, interface, method);
    question.setArguments(arguments);
    return bus.call(question);
}

QString managerInterface()
{
    return QStringLiteral("org.gnome.Mutter.RemoteDesktop");
}

QString sessionInterface()
{
    return QStringLiteral("org.gnome.Mutter.RemoteDesktop.Session");
}

/// Everything that comes out of `descriptor`; absent when its end does not come.
std::optional<std::string> readToEnd(int descriptor)
{
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        const auto limit = static_cast<int>(std::chrono::milliseconds(defaultTimeout).count());
        if (::poll(&readable, 1, limit) != 1) {
            ADD_FAILURE() << "the clipboard's text does not end; so far: " << text.size();
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
    QDBusMessage answer;
    const auto isThere = [&] {
        answer =
            ask(bus,
                QStringLiteral("/org/gnome/Mutter/RemoteDesktop"),
                managerInterface(),
                QStringLiteral("CreateSession"));
        return answer.type() == QDBusMessage::ReplyMessage;
    };
    EXPECT_TRUE(awaitWithPolling(isThere)) << answer.errorMessage().toStdString();
    remoteSession = answer.arguments().value(0).value<QDBusObjectPath>().path();
    for (const auto& [method, arguments] :
         {std::pair{QStringLiteral("Start"), QVariantList{}},
          std::pair{QStringLiteral("EnableClipboard"), QVariantList{QVariantMap{}}}})
    {
        answer = ask(bus, remoteSession, sessionInterface(), method, arguments);
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    }
}

MutterClipboard::~MutterClipboard()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<std::string> MutterClipboard::paste(const std::string& type) const
{
    const QDBusMessage answer =
        ask(bus,
            remoteSession,
            sessionInterface(),
            QStringLiteral("SelectionRead"),
            {QString::fromStdString(type)});
    if (answer.type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    return readToEnd(answer.arguments().value(0).value<QDBusUnixFileDescriptor>().fileDescriptor());
}

} // namespace orlimo
