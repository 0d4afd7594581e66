#pragma once

#include "tests/desktop/sessions/BusConnection.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/MessageBus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {

/// A session message bus of its own, and the accessibility bus that it leads to. Both end with the
/// object.
class SessionBuses
{
public:
    /// Starts both in `runtimeFolder`, which only the user may enter, and waits until they serve. A
    /// bus that does not start is a test failure.
    explicit SessionBuses(const std::filesystem::path& runtimeFolder)
        : bus(runtimeFolder)
        , launcher(
              "/usr/libexec/at-spi-bus-launcher",
              {.arguments = {"--launch-immediately"},
               .environment = {
                   {"DBUS_SESSION_BUS_ADDRESS", sessionAddress()},
                   {"GSETTINGS_BACKEND", "memory"},
                   {"XDG_RUNTIME_DIR", runtimeFolder.string()}}})
    {
        const auto service = QStringLiteral("org.a11y.Bus");
        const BusConnection connection(sessionAddress());
        EXPECT_TRUE(awaitWithPolling([&] {
            const QDBusMessage reply = connection.call(
                service, QStringLiteral("/org/a11y/bus"), service, QStringLiteral("GetAddress"));
            accessibility = reply.type() == QDBusMessage::ReplyMessage
                                ? reply.arguments().value(0).toString().toStdString()
                                : "";
            return !accessibility.empty();
        })) << launcher.errors();
    }
    SessionBuses(const SessionBuses&) = delete;
    SessionBuses& operator=(const SessionBuses&) = delete;
    // The launcher takes the accessibility bus with it when it is asked to end.
    ~SessionBuses() { launcher.terminate(); }

    /// The value of DBUS_SESSION_BUS_ADDRESS for programs that are to use the session bus.
    [[nodiscard]] const std::string& sessionAddress() const { return bus.address(); }

    [[nodiscard]] const std::string& accessibilityAddress() const { return accessibility; }

private:
    MessageBus bus;
    ChildProcess launcher;
    std::string accessibility;
};

} // namespace orlimo
