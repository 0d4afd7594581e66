#include "tests/app/SessionBuses.h"

#include "tests/support/ParentBond.h"
#include "tests/support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

/// A bus that starts no service: nothing of the machine's desktop gets into a test.
std::string busConfiguration(const std::filesystem::path& runtimeFolder)
{
    return R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=)" +
           runtimeFolder.string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

/// Asks the session bus where the accessibility bus is; empty as long as nobody answers.
std::string accessibilityAddressOn(const QDBusConnection& session)
{
    const QDBusMessage answer = session.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"),
        QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"),
        QStringLiteral("GetAddress")));
    const bool answered = answer.type() == QDBusMessage::ReplyMessage;
    return answered ? answer.arguments().value(0).toString().toStdString() : "";
}

} // namespace

SessionBuses::SessionBuses(const std::filesystem::path& runtimeFolder)
{
    const auto configuration = runtimeFolder / "session-bus.conf";
    writeFile(configuration, busConfiguration(runtimeFolder));
    sessionBus = std::make_unique<ChildProcess>(
        "/usr/bin/dbus-daemon",
        ChildSettings{
            .arguments =
                {"--config-file=" + configuration.string(), "--print-address=1", "--nofork"},
            .beforeStart = endWithParent,
        });
    session = sessionBus->readLine().value_or("");
    EXPECT_FALSE(session.empty()) << sessionBus->errors();

    accessibilityLauncher = std::make_unique<ChildProcess>(
        "/usr/libexec/at-spi-bus-launcher",
        ChildSettings{
            .arguments = {"--launch-immediately"},
            .environment =
                {{"DBUS_SESSION_BUS_ADDRESS", session},
                 {"GSETTINGS_BACKEND", "memory"},
                 {"XDG_RUNTIME_DIR", runtimeFolder.string()}},
        });
    const auto name = QString::fromStdString(session);
    const auto connection = QDBusConnection::connectToBus(name, name);
    EXPECT_TRUE(awaitSparingly([&] {
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
