#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/desktop/sessions/TrayItem.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace orlimo {

/// A panel with status notifier items on a desktop's session bus, a process of its own, and its one
/// item. Gone, as after a crash, when the object goes.
class StatusNotifierPanel : public TrayItem
{
public:
    enum class Host {
        present, ///< the panel is there
        absent,  ///< only the watcher is there that panels and items register with
    };

    /// Starts it and waits until its name is on the bus.
    explicit StatusNotifierPanel(const DesktopSession& desktop, Host host = Host::present)
        : TrayItem(desktop.environment().at("DBUS_SESSION_BUS_ADDRESS").value())
        , process(
              ORLIMO_TEST_PANEL,
              {.arguments = std::vector<std::string>(host == Host::present ? 0 : 1, "no host"),
               .environment = desktop.environment(),
               .beforeStart = dieWithParent})
    {
        EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
    }

    void registerHost() { command("host comes"); }
    void unregisterHost() { command("host goes"); }

    /// It responds to nobody from now on.
    void freeze() const { process.signal(SIGSTOP); }
    void thaw() const { process.signal(SIGCONT); }

private:
    void command(const std::string& line) { EXPECT_EQ(process.ask(line), "done"); }

    ChildProcess process;
};

} // namespace orlimo
