#include "tests/desktop/sessions/SessionBuses.h"

#include "tests/support/Await.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

/// Asks the session bus where the accessibility bus is; empty as long as nobody replies.
std::string accessibilityAddressOn(const QDBusConnection& session)
{
    const QDBusMessage reply = session.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"),
        QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"),
        QStringLiteral("GetAddress")));
    const bool isKnown = reply.type() == QDBusMessage::ReplyMessage;
    return isKnown ? reply.arguments().value(0).toString().toStdString() : "";
}

} // namespace

SessionBuses::SessionBuses(const std::filesystem::path& runtimeFolder)
    : bus(runtimeFolder)
{
    accessibilityLauncher = std::make_unique<ChildProcess>(
        "/usr/libexec/at-spi-bus-launcher",
        ChildSettings{
            .arguments = {"--launch-immediately"},
            .environment =
                {{"DBUS_SESSION_BUS_ADDRESS", sessionAddress()},
                 {"GSETTINGS_BACKEND", "memory"},
                 {"XDG_RUNTIME_DIR", runtimeFolder.string()}},
        });
    const auto name = QString::fromStdString(sessionAddress());
    const auto connection = QDBusConnection::connectToBus(name, name);
    EXPECT_TRUE(awaitWithPolling([&] {
        accessibility = accessibilityAddressOn(connection);
        return !accessibility.empty();
    })) << accessibilityLauncher->errors();
    QDBusConnection::disconnectFromBus(name);
}

SessionBuses::~SessionBuses()
{
    // The launcher takes the accessibility bus with it when it is asked to end.
    accessibilityLauncher->terminate();
}

} // namespace orlimo
