#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/desktop/sessions/TrayItems.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace orlimo {

/// A panel with status notifier items on a desktop's session bus, a process of its own, and the
/// user of its one item. Gone, as after a crash, when the object goes.
class StatusNotifierPanel
{
public:
    enum class Host {
        present, ///< the panel is there
        absent,  ///< only the watcher is there that panels and items register with
    };

    /// Starts it and waits until its name is on the bus.
    explicit StatusNotifierPanel(const DesktopSession& desktop, Host host = Host::present)
        : process(
              ORLIMO_TEST_PANEL,
              {.arguments = std::vector<std::string>(host == Host::present ? 0 : 1, "no host"),
               .environment = desktop.environment(),
               .beforeStart = dieWithParent})
        , tray(desktop.environment().at("DBUS_SESSION_BUS_ADDRESS").value())
    {
        EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
    }

    void registerHost() { command("host comes"); }
    void unregisterHost() { command("host goes"); }

    /// How many items it shows.
    [[nodiscard]] int items() const { return static_cast<int>(tray.services().size()); }

    /// Waits until it shows one item, and no other.
    [[nodiscard]] bool awaitItem() const
    {
        return awaitWithPolling([this] { return items() == 1; });
    }

    /// What a person does with the one item, and sees of it: as in TrayItems.
    void click() const { tray.activate(item(), 0, 0); }
    [[nodiscard]] std::string iconName() const { return tray.iconNameOf(item()); }
    [[nodiscard]] std::string iconSizes() const { return tray.iconSizesOf(item()); }
    [[nodiscard]] std::string menu() const { return tray.menuOf(item()); }
    void choose(const std::string& text) const { tray.choose(item(), text); }

    /// It responds to nobody from now on.
    void freeze() const { process.signal(SIGSTOP); }
    void thaw() const { process.signal(SIGCONT); }

private:
    [[nodiscard]] std::string item() const
    {
        const auto services = tray.services();
        EXPECT_EQ(services.size(), 1U);
        return services.empty() ? "" : services.front();
    }
    void command(const std::string& line) { EXPECT_EQ(process.ask(line), "done"); }

    ChildProcess process;
    TrayItems tray;
};

} // namespace orlimo
