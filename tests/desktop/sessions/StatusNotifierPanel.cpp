#include "tests/desktop/sessions/StatusNotifierPanel.h"

#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {

StatusNotifierPanel::StatusNotifierPanel(const DesktopSession& desktop, Host host)
    : process(
          ORLIMO_TEST_PANEL,
          {.arguments = host == Host::present ? std::vector<std::string>{}
                                              : std::vector<std::string>{"without a host"},
           .environment = desktop.environment(),
           .beforeStart = dieWithParent})
{
    EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
}

void StatusNotifierPanel::registerHost()
{
    command("host comes");
}

void StatusNotifierPanel::unregisterHost()
{
    command("host goes");
}

int StatusNotifierPanel::items()
{
    return std::stoi(process.ask("items"));
}

bool StatusNotifierPanel::awaitItem()
{
    return awaitWithPolling([this] { return items() == 1; });
}

void StatusNotifierPanel::click()
{
    command("activate");
}

std::string StatusNotifierPanel::iconName()
{
    return process.ask("icon name");
}

std::string StatusNotifierPanel::iconSizes()
{
    return process.ask("icon sizes");
}

std::string StatusNotifierPanel::menu()
{
    return process.ask("menu");
}

void StatusNotifierPanel::choose(const std::string& text)
{
    command("choose " + text);
}

void StatusNotifierPanel::freeze() const
{
    process.signal(SIGSTOP);
}

void StatusNotifierPanel::thaw() const
{
    process.signal(SIGCONT);
}

void StatusNotifierPanel::command(const std::string& line)
{
    EXPECT_EQ(process.ask(line), "done");
}

} // namespace orlimo
