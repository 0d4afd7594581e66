#include "tests/desktop/sessions/StatusNotifierPanel.h"

#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

namespace orlimo {

StatusNotifierPanel::StatusNotifierPanel(const DesktopSession& desktop, Host host)
    : process(
          ORLIMO_TEST_PANEL,
          {.arguments = host == Host::present ? std::vector<std::string>{}
                                              : std::vector<std::string>{"without a host"},
           .environment = desktop.environment(),
           .beforeStart = dieWithParent})
    , tray(desktop.environment().at("DBUS_SESSION_BUS_ADDRESS").value())
{
    EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
}

int StatusNotifierPanel::items() const
{
    return static_cast<int>(tray.services().size());
}

bool StatusNotifierPanel::awaitItem() const
{
    return awaitWithPolling([this] { return items() == 1; });
}

std::string StatusNotifierPanel::item() const
{
    const auto services = tray.services();
    EXPECT_EQ(services.size(), 1U);
    return services.empty() ? "" : services.front();
}

void StatusNotifierPanel::command(const std::string& line)
{
    EXPECT_EQ(process.ask(line), "done");
}

} // namespace orlimo
