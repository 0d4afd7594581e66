#pragma once

#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/MutterClipboard.h"

#include <system_error>

namespace orlimo {

/// A Wayland desktop of the mutter compositor, without a display: what GNOME gives to programs as
/// far as windows and the clipboard go. It has an X server for programs that want one, no tray, and
/// gives the clipboard only to the program with the focus.
class MutterSession : public CompositorSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason()
    {
        const std::string missing = missingProgram({"/usr/bin/mutter", "/usr/bin/Xwayland"});
        return missing.empty() && !openSocketFolder() ? "/tmp/.X11-unix is not open to everybody"
                                                      : missing;
    }

    /// Qt's platform for the program there.
    static constexpr const char* platform = "xcb";

    /// Starts everything and waits until it serves.
    MutterSession()
    {
        auto variables = environment();
        variables.erase("WAYLAND_DISPLAY");
        variables["GSETTINGS_BACKEND"] = "memory";
        startCompositor(
            "/usr/bin/mutter",
            {
                .arguments =
                    {"--wayland",
                     "--headless",
                     "--virtual-monitor",
                     "1280x800",
                     "--wayland-display",
                     waylandDisplay},
                .environment = variables,
                .beforeStart = dieWithParent,
            },
            [this] {
                xDisplay = tokenAfter("Using public X11 display ", output());
                return !xDisplay.empty() && std::filesystem::exists(runtimeFolder / waylandDisplay);
            });
        ownClipboard.emplace(environment());
    }

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const
    {
        auto variables = environmentOf("GNOME");
        variables["WAYLAND_DISPLAY"] = waylandDisplay;
        if (!xDisplay.empty()) {
            variables["DISPLAY"] = xDisplay;
            variables["XAUTHORITY"] = authority().string();
        }
        return variables;
    }

    /// The clipboard as the compositor knows it.
    [[nodiscard]] const MutterClipboard& clipboard() const { return *ownClipboard; }

private:
    /// Makes the folder of X servers' sockets what it is on a machine that was started as usual,
    /// for the compositor's X server refuses any other. Other X servers make it less open where
    /// they find none. Somebody else's is left as it is; false where that is another.
    [[nodiscard]] static bool openSocketFolder()
    {
        constexpr const char* socketFolder = "/tmp/.X11-unix";
        constexpr auto open = std::filesystem::perms::all | std::filesystem::perms::sticky_bit;
        std::error_code ignored;
        std::filesystem::create_directory(socketFolder, ignored);
        std::filesystem::permissions(socketFolder, open, ignored);
        return std::filesystem::status(socketFolder).permissions() == open;
    }

    /// What follows `lead` in `text`, up to a comma.
    [[nodiscard]] static std::string tokenAfter(const std::string& lead, const std::string& text)
    {
        const std::size_t found = text.find(lead);
        if (found == std::string::npos) {
            return "";
        }
        const std::size_t start = found + lead.size();
        return text.substr(start, text.find(',', start) - start);
    }

    /// The file with which programs show the X server that they may use it.
    [[nodiscard]] std::filesystem::path authority() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(runtimeFolder)) {
            if (entry.path().filename().string().starts_with(".mutter-Xwaylandauth.")) {
                return entry.path();
            }
        }
        return {};
    }

    static constexpr const char* waylandDisplay = "wayland-mutter";

    std::string xDisplay;
    std::optional<MutterClipboard> ownClipboard;
};

} // namespace orlimo
