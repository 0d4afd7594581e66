#pragma once

#include "tests/desktop/sessions/AccessibilityTree.h"
#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/SessionBuses.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace orlimo {

/// What the tests' Wayland desktops have in common: a runtime folder, the buses, and a compositor
/// that can be killed and stopped. All of its own and ended with the object.
class CompositorSession
{
public:
    [[nodiscard]] const AccessibilityTree& accessibility() const { return tree; }

    /// Kills the compositor, as a crash would.
    void kill()
    {
        compositor->signal(SIGKILL);
        compositor->awaitEnd();
    }

    /// Has the compositor stand still: programs that ask it for something wait until it goes on.
    void freeze() const { compositor->signal(SIGSTOP); }
    void thaw() const { compositor->signal(SIGCONT); }

    [[nodiscard]] bool isRunning() { return compositor->isRunning(); }

    /// What the compositor has printed so far, for people.
    [[nodiscard]] std::string output() { return compositor->output() + compositor->errors(); }

protected:
    /// Starts the compositor and waits until `serves` holds. Where it ends before, or does not
    /// serve in half a minute, nothing can be tested: that ends the test with what it printed.
    void startCompositor(
        const std::filesystem::path& program,
        const ChildSettings& settings,
        const std::function<bool()>& serves)
    {
        compositor = std::make_unique<ChildProcess>(program, settings);
        bool isServing = false;
        const auto isDecided = [&] { return (isServing = serves()) || !isRunning(); };
        if (!awaitWithPolling(isDecided, std::chrono::seconds(30)) || !isServing) {
            throw std::runtime_error(
                program.string() + (isRunning() ? " does not serve" : " has ended") +
                "; it printed\n" + output());
        }
    }

    /// What puts a program on a desktop of that name, but for the compositor's socket.
    [[nodiscard]] std::map<std::string, std::optional<std::string>>
    environmentOf(const std::string& desktopName) const
    {
        auto variables = desktopVariables();
        variables["DBUS_SESSION_BUS_ADDRESS"] = buses.sessionAddress();
        // Nothing of the machine gets in.
        variables["DBUS_SYSTEM_BUS_ADDRESS"] =
            "unix:path=" + (runtimeFolder / "no-system-bus").string();
        variables["XDG_CURRENT_DESKTOP"] = desktopName;
        variables["XDG_RUNTIME_DIR"] = runtimeFolder.string();
        variables["XDG_SESSION_TYPE"] = "wayland";
        return variables;
    }

    TemporaryFolder folder;
    std::filesystem::path runtimeFolder = makePrivateFolder(folder.path() / "runtime");
    SessionBuses buses{runtimeFolder};

private:
    AccessibilityTree tree{buses.accessibilityAddress()};
    std::unique_ptr<ChildProcess> compositor;
};

} // namespace orlimo
