#pragma once

#include "tests/desktop/sessions/BusConnection.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/support/Await.h"

#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace orlimo {

/// The clipboard as the mutter compositor knows it, read as a remote viewer of its desktop
/// reads it: without X, and without a window.
class MutterClipboard
{
public:
    /// Connects to the compositor on the session bus of `environment`, which puts programs on its
    /// desktop, and waits until it responds. What does not respond is a test failure.
    explicit MutterClipboard(std::map<std::string, std::optional<std::string>> environment)
        : variables(std::move(environment))
        , bus(variables.at("DBUS_SESSION_BUS_ADDRESS").value())
    {
        QDBusMessage reply;
        const auto isServed = [&] {
            reply = ask(QStringLiteral("/org/gnome/Mutter/RemoteDesktop"), "", "CreateSession");
            return reply.type() == QDBusMessage::ReplyMessage;
        };
        EXPECT_TRUE(awaitWithPolling(isServed)) << reply.errorMessage().toStdString();
        session = reply.arguments().value(0).value<QDBusObjectPath>().path();
        for (const auto& [method, arguments] :
             {std::pair{"Start", QVariantList{}},
              std::pair{"EnableClipboard", QVariantList{QVariantMap{}}}})
        {
            reply = ask(session, ".Session", method, arguments);
            EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage)
                << reply.errorMessage().toStdString();
        }
    }

    /// The text that the clipboard holds, byte for byte. Absent when nobody owns it, or its text
    /// does not end within ten seconds.
    [[nodiscard]] std::optional<std::string> paste() const
    {
        const QDBusMessage reply =
            ask(session, ".Session", "SelectionRead", {QStringLiteral("text/plain;charset=utf-8")});
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return std::nullopt;
        }
        return readToEnd(
            reply.arguments().value(0).value<QDBusUnixFileDescriptor>().fileDescriptor());
    }

    [[nodiscard]] static std::string problem()
    {
        return "nobody owns it, or its text does not end";
    }

    /// Makes another program, one of X, own the clipboard with `text` and a line break, and waits
    /// until the compositor knows.
    void copy(const std::string& text) const
    {
        copyWithXclip(variables, "clipboard", text);
        std::optional<std::string> found;
        EXPECT_TRUE(awaitWithPolling([&] { return (found = paste()) == text + "\n"; }))
            << "instead of \"" << text << "\" it holds " << found.value_or("nothing");
    }

private:
    /// Calls `method` of the compositor's remote desktop object at `path`.
    [[nodiscard]] QDBusMessage
    ask(const QString& path,
        const char* interface,
        const char* method,
        const QVariantList& arguments = {}) const
    {
        const auto service = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
        return bus.call(
            service, path, service + QLatin1String(interface), QLatin1String(method), arguments);
    }

    /// Everything that comes out of `descriptor`. Absent when its end does not come, as where the
    /// owner of the selection goes away while it hands its text over: the compositor then closes
    /// nothing, and the selection is to be read again.
    static std::optional<std::string> readToEnd(int descriptor)
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

    std::map<std::string, std::optional<std::string>> variables;
    BusConnection bus;
    QString session;
};

} // namespace orlimo
