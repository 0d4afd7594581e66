#include "tests/desktop/sessions/wayland/CompositorSession.h"

#include "tests/desktop/sessions/DesktopVariables.h"

namespace orlimo {

CompositorSession::CompositorSession()
    : runtimeFolder(makePrivateFolder(folder.path() / "runtime"))
    , buses(runtimeFolder)
{}

std::map<std::string, std::optional<std::string>>
CompositorSession::environmentOf(const std::string& desktopName) const
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

void CompositorSession::kill()
{
    compositor->signal(SIGKILL);
    compositor->awaitEnd();
}

} // namespace orlimo
