#include "tests/support/process/MessageBus.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {

namespace {

/// A bus that starts no service but those of `services`: nothing of the machine's desktop gets into
/// a test.
std::string
busConfiguration(const std::filesystem::path& runtimeFolder, const std::filesystem::path& services)
{
    return R"(<busconfig>
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
)";
}

} // namespace

MessageBus::MessageBus(const std::filesystem::path& runtimeFolder)
    : services(runtimeFolder / "services")
{
    std::filesystem::create_directories(services);
    const auto configuration = runtimeFolder / "session-bus.conf";
    writeFile(configuration, busConfiguration(runtimeFolder, services));
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

void MessageBus::freeze() const
{
    daemon->signal(SIGSTOP);
}

void MessageBus::thaw() const
{
    daemon->signal(SIGCONT);
}

void MessageBus::end()
{
    daemon->terminate();
}

} // namespace orlimo
