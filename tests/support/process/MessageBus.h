#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

namespace orlimo {

/// A session message bus of its own, ended with the object.
class MessageBus
{
public:
    /// Starts the bus in `runtimeFolder`, which only the user may enter, and waits until it serves.
    /// One that does not start is a test failure.
    explicit MessageBus(const std::filesystem::path& runtimeFolder)
        : services(runtimeFolder / "services")
    {
        std::filesystem::create_directories(services);
        const auto configuration = runtimeFolder / "session-bus.conf";
        writeFile(
            configuration,
            R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=)" +
                runtimeFolder.string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)" +
                services.string() + R"(</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
        daemon = std::make_unique<ChildProcess>(
            "/usr/bin/dbus-daemon",
            ChildSettings{
                .arguments =
                    {"--config-file=" + configuration.string(), "--print-address=1", "--nofork"},
                .beforeStart = dieWithParent,
            });
        ownAddress = daemon->readLine().value_or("");
        EXPECT_FALSE(ownAddress.empty()) << daemon->errors();
    }

    /// The value of DBUS_SESSION_BUS_ADDRESS for programs that are to use it.
    [[nodiscard]] const std::string& address() const { return ownAddress; }

    /// Where the descriptions of the services lie that it starts. Nothing of the machine's desktop
    /// is among them.
    [[nodiscard]] const std::filesystem::path& servicesFolder() const { return services; }

    /// Has the bus stand still: it takes what it is sent, and replies when it goes on.
    void freeze() const { daemon->signal(SIGSTOP); }
    void thaw() const { daemon->signal(SIGCONT); }

    /// Ends the bus before its time.
    void end() { daemon->terminate(); }

private:
    std::filesystem::path services;
    std::unique_ptr<ChildProcess> daemon;
    std::string ownAddress;
};

} // namespace orlimo
