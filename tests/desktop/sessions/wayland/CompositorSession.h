#pragma once

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/SessionBuses.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// What the tests' Wayland desktops have in common: a runtime folder, the buses, and a compositor
/// that can be killed and stopped. All of its own and ended with the object.
class CompositorSession
{
public:
    CompositorSession(const CompositorSession&) = delete;
    CompositorSession& operator=(const CompositorSession&) = delete;

    /// Kills the compositor, as a crash would.
    void kill()
    {
        compositor->signal(SIGKILL);
        compositor->awaitEnd();
    }

    /// Has the compositor stand still: programs that ask it for something wait until it goes on.
    void freeze() const { compositor->signal(SIGSTOP); }
    void thaw() const { compositor->signal(SIGCONT); }

protected:
    CompositorSession()
        : runtimeFolder(makePrivateFolder(folder.path() / "runtime"))
        , buses(runtimeFolder)
    {}
    ~CompositorSession() = default;

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
    std::filesystem::path runtimeFolder;
    SessionBuses buses;
    std::unique_ptr<ChildProcess> compositor;
};

} // namespace orlimo
