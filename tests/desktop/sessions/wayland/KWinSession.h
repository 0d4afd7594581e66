#pragma once

#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"

namespace orlimo {

/// A Wayland desktop of the KWin compositor, without a display and without a panel: what Plasma
/// gives to programs as far as windows and the clipboard go.
class KWinSession : public CompositorSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason()
    {
        return missingProgram({installed, "/usr/bin/wl-copy"});
    }

    /// Qt's platform for the program there.
    static constexpr const char* platform = "wayland";

    /// Starts everything and waits until it serves.
    KWinSession()
    {
        // The installed compositor has a capability that not every container grants, and where it
        // is not granted does not start; a copy has none. It insists on its name.
        const auto copy = folder.path() / "bin/kwin_wayland";
        std::filesystem::create_directories(copy.parent_path());
        std::filesystem::copy_file(installed, copy);
        auto variables = environment();
        variables.erase("WAYLAND_DISPLAY");
        // They select a platform theme that Plasma brings along; where it is missing, KWin 6
        // crashes in the one that Qt takes instead.
        variables["KDE_FULL_SESSION"] = variables["KDE_SESSION_VERSION"] = std::nullopt;
        // What it stores goes with the desktop.
        variables["HOME"] = (folder.path() / "home").string();
        for (const char* variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            variables[variable] = std::nullopt;
        }
        startCompositor(
            copy,
            {
                .arguments =
                    {"--virtual",
                     "--no-lockscreen",
                     "--no-global-shortcuts",
                     "--width=1280",
                     "--height=800",
                     "--socket",
                     waylandDisplay},
                .environment = variables,
                .beforeStart = dieWithParent,
            },
            // The socket is there before the compositor can draw, which it may fail to.
            [this] {
                return std::filesystem::exists(runtimeFolder / waylandDisplay) &&
                       ownClipboard.clear();
            });
    }

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const
    {
        auto variables = environmentOf("KDE");
        variables["KDE_FULL_SESSION"] = "true";
        variables["KDE_SESSION_VERSION"] = "5";
        variables["WAYLAND_DISPLAY"] = waylandDisplay;
        return variables;
    }

    [[nodiscard]] WaylandClipboard& clipboard() { return ownClipboard; }

private:
    static constexpr const char* installed = "/usr/bin/kwin_wayland";
    static constexpr const char* waylandDisplay = "wayland-kwin";

    WaylandClipboard ownClipboard{environment()};
};

} // namespace orlimo
