#pragma once

#include "tests/desktop/sessions/TrayItem.h"
#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/desktop/sessions/x11/XWindows.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace orlimo {

/// A window as the compositor knows it.
struct SwayWindow
{
    std::int64_t process = 0;
    std::string title;
    QRect area;
    bool isFocused = false;
    bool isFloating = false;
    /// Whether the program speaks Wayland itself.
    bool isWayland = false;
};

/// A Wayland desktop of the sway compositor, shown on an X server that nobody sees, so that its
/// pointer and its keyboard are real, with a bar that holds a tray.
class SwaySession : public CompositorSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason()
    {
        return missingProgram({"/usr/bin/sway", "/usr/bin/swaybar", "/usr/bin/wl-copy"});
    }

    /// Qt's platform for the program there.
    static constexpr const char* platform = "wayland";

    /// Starts everything and waits until it serves.
    SwaySession()
    {
        // The compositor does not run for the superuser.
        std::filesystem::permissions(
            folder.path(), std::filesystem::perms::others_exec, std::filesystem::perm_options::add);
        handToUnprivilegedUser(compositorFolder);
        const auto configurationFile = compositorFolder / "sway.conf";
        writeFile(configurationFile, configuration);
        auto variables = environment();
        variables["XDG_RUNTIME_DIR"] = compositorFolder.string();
        variables["WLR_BACKENDS"] = "x11";
        variables["WLR_RENDERER"] = "pixman";
        startCompositor(
            "/usr/bin/sway",
            {
                .arguments = {"--config", configurationFile.string()},
                .environment = variables,
                .beforeStart =
                    [] {
                        becomeUnprivilegedUser();
                        // After it, for a new user forgets the bond.
                        dieWithParent();
                    },
            },
            [this] {
                std::istringstream words(output());
                std::string serving;
                std::string socket;
                words >> serving >> socket >> controlSocket;
                waylandDisplay = compositorFolder / socket;
                return serving == "serving" && !controlSocket.empty();
            });
        ownClipboard.emplace(environment());
        startBar();
    }

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const
    {
        auto variables = environmentOf("sway");
        // There is an X server too, as on most Wayland desktops, and it is the worse choice.
        variables["DISPLAY"] = xServer.display();
        if (!waylandDisplay.empty()) {
            variables["SWAYSOCK"] = controlSocket;
            variables["WAYLAND_DISPLAY"] = waylandDisplay;
        }
        return variables;
    }

    [[nodiscard]] WaylandClipboard& clipboard() { return *ownClipboard; }
    [[nodiscard]] const TrayItem& tray() const { return trayItem; }

    /// The pointer and the keyboard of this desktop, whose screen is the X server's.
    [[nodiscard]] const XServer& input() const { return xServer; }

    /// Shows the bar and waits until its tray takes icons.
    void startBar()
    {
        bar = std::make_unique<ChildProcess>(
            "/usr/bin/swaybar",
            ChildSettings{
                .arguments = {"--bar_id", "main", "--socket", controlSocket},
                .environment = environment(),
                .beforeStart = dieWithParent,
            });
        EXPECT_TRUE(awaitWithPolling([this] { return trayItem.hasHost(); })) << bar->errors();
    }

    /// Takes the bar away, and with it the tray, also from the screen: a click on what is left of
    /// it there is lost.
    void stopBar()
    {
        bar->terminate();
        bar.reset();
        EXPECT_TRUE(awaitWithPolling([this] { return !trayItem.hasHost() && !showsIcon(); }));
    }

    /// The windows that can be seen.
    [[nodiscard]] std::vector<SwayWindow> windows() const
    {
        const auto tool = runTool(
            "/usr/bin/swaymsg",
            {.arguments = {"--raw", "--type", "get_tree"}, .environment = environment()});
        EXPECT_EQ(tool.status, 0) << tool.errors;
        const auto layout = QJsonDocument::fromJson(QByteArray::fromStdString(tool.output));
        std::vector<SwayWindow> found;
        collect(layout.object(), false, found);
        return found;
    }

    /// Has the compositor carry out a command of its own; one that it refuses is a test failure.
    void command(const std::string& text) const
    {
        const auto tool =
            runTool("/usr/bin/swaymsg", {.arguments = {"--", text}, .environment = environment()});
        EXPECT_EQ(tool.status, 0) << text << ": " << tool.output << tool.errors;
    }

    /// Whether the bar shows anything where the only icon is.
    [[nodiscard]] bool showsIcon() const
    {
        constexpr QPoint inTheMiddle(500, 2);
        constexpr QSize line(24, 20);
        constexpr int half = 6;
        const QRect icon(onlyIcon - QPoint(half, half), onlyIcon + QPoint(half, half));
        // The bar is there, and it is not empty.
        return xWindows.colorsIn({inTheMiddle, line}) == 1 && xWindows.colorsIn(icon) > 1;
    }

    /// The middle of the only icon in the tray.
    static constexpr QPoint onlyIcon{1012, 12};

private:
    /// Adds the windows in the part `node` of the compositor's tree to `found`.
    static void collect(const QJsonObject& node, bool isFloating, std::vector<SwayWindow>& found)
    {
        if (node.contains(u"pid") && node[u"visible"].toBool()) {
            const QJsonObject area = node[u"rect"].toObject();
            found.push_back({
                .process = node[u"pid"].toInt(),
                .title = node[u"name"].toString().toStdString(),
                .area =
                    {area[u"x"].toInt(),
                     area[u"y"].toInt(),
                     area[u"width"].toInt(),
                     area[u"height"].toInt()},
                .isFocused = node[u"focused"].toBool(),
                .isFloating = isFloating,
                .isWayland = node[u"shell"].toString() == u"xdg_shell",
            });
        }
        for (const auto& child : node[u"nodes"].toArray()) {
            collect(child.toObject(), isFloating, found);
        }
        for (const auto& child : node[u"floating_nodes"].toArray()) {
            collect(child.toObject(), true, found);
        }
    }

    /// A compositor that starts nothing by itself and says on standard output when it serves, and
    /// where.
    static constexpr const char* configuration = R"(xwayland disable
default_border none
bar main {
    swaybar_command true
    position top
    height 24
    font DejaVu Sans 10
}
exec echo "serving $WAYLAND_DISPLAY $SWAYSOCK"
)";

    std::filesystem::path compositorFolder = makePrivateFolder(folder.path() / "compositor");
    /// Its screen is as large as the compositor makes its window on it.
    XServer xServer{"1024x768x24"};
    XWindows xWindows{xServer.display()};
    TrayItem trayItem{buses.sessionAddress()};
    std::string waylandDisplay;
    std::string controlSocket;
    // The compositor would take these with it and say so; they end before it.
    std::optional<WaylandClipboard> ownClipboard;
    std::unique_ptr<ChildProcess> bar;
};

} // namespace orlimo
