#include "tests/support/OwnSessionBus.h"

#include "tests/support/ParentBond.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orlimo {

namespace {

std::filesystem::path writeConfiguration(const std::filesystem::path& folder)
{
    const auto file = folder / "session-bus.conf";
    writeFile(
        file,
        R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=)" +
            folder.string() + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
    return file;
}

} // namespace

OwnSessionBus::OwnSessionBus(const std::filesystem::path& folder)
    : daemon(
          "/usr/bin/dbus-daemon",
          ChildSettings{
              .arguments =
                  {"--config-file=" + writeConfiguration(folder).string(),
                   "--print-address=1",
                   "--nofork"},
              .beforeStart = endWithParent,
          })
{
    servedAt = daemon.readLine().value_or("");
    EXPECT_FALSE(servedAt.empty()) << daemon.errors();
}

} // namespace orlimo
