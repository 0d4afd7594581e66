#pragma once

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

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

    /// Starts everything and waits until it serves; what does not start is a test failure.
    KWinSession()
    {
        // The installed compositor has a capability that not every container grants, and where it
        // is not granted does not start; a copy has none. It insists on its name.
        const auto copy = folder.path() / "bin/kwin_wayland";
        std::filesystem::create_directories(copy.parent_path());
        std::filesystem::copy_file(installed, copy);
        auto variables = environment();
        variables.erase("WAYLAND_DISPLAY");
        // They select a platform theme that Plasma brings along; where it is missing, KWin 6 crashes
        // in the one that Qt takes instead.
        variables["KDE_FULL_SESSION"] = variables["KDE_SESSION_VERSION"] = std::nullopt;
        // What it stores goes with the desktop.
        variables["HOME"] = (folder.path() / "home").string();
        for (const char* variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            variables[variable] = std::nullopt;
        }
        compositor = std::make_unique<ChildProcess>(
            copy,
            ChildSettings{
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
            });
        EXPECT_TRUE(awaitWithPolling([this] {
            return std::filesystem::exists(runtimeFolder / waylandDisplay);
        })) << compositor->errors();
        ownClipboard = std::make_unique<WaylandClipboard>(environment());
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

    [[nodiscard]] WaylandClipboard& clipboard() { return *ownClipboard; }

private:
    static constexpr const char* installed = "/usr/bin/kwin_wayland";
    static constexpr const char* waylandDisplay = "wayland-kwin";

    std::unique_ptr<WaylandClipboard> ownClipboard;
};

} // namespace orlimo
