#include "tests/desktop/sessions/wayland/SwaySession.h"

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/support/process/ParentDeathSignal.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <sstream>

namespace orlimo {

namespace {

/// A compositor that starts nothing by itself and says on standard output when it serves, and
/// where.
constexpr const char* configuration = R"(xwayland disable
default_border none
bar main {
    swaybar_command true
    position top
    height 24
    font DejaVu Sans 10
}
exec echo "serving $WAYLAND_DISPLAY $SWAYSOCK"
)";

/// The screen is as large as the compositor makes its window on an X server.
constexpr const char* screen = "1024x768x24";

QRect rectangle(const QJsonObject& object)
{
    return {
        object[u"x"].toInt(),
        object[u"y"].toInt(),
        object[u"width"].toInt(),
        object[u"height"].toInt(),
    };
}

SwayWindow window(const QJsonObject& node, bool isFloating)
{
    return {
        .process = node[u"pid"].toInt(),
        .title = node[u"name"].toString().toStdString(),
        .appId = node[u"app_id"].toString().toStdString(),
        .area = rectangle(node[u"rect"].toObject()),
        .isFocused = node[u"focused"].toBool(),
        .isFloating = isFloating,
        .isWayland = node[u"shell"].toString() == u"xdg_shell",
    };
}

/// Adds the windows in the part `node` of the compositor's tree to `found`.
void collect(const QJsonObject& node, bool isFloating, std::vector<SwayWindow>& found)
{
    if (node.contains(u"pid") && node[u"visible"].toBool()) {
        found.push_back(window(node, isFloating));
    }
    for (const auto& child : node[u"nodes"].toArray()) {
        collect(child.toObject(), isFloating, found);
    }
    for (const auto& child : node[u"floating_nodes"].toArray()) {
        collect(child.toObject(), true, found);
    }
}

} // namespace

std::string SwaySession::skipReason()
{
    return missingProgram({"/usr/bin/sway", "/usr/bin/swaybar", "/usr/bin/wl-copy"});
}

SwaySession::SwaySession()
    : compositorFolder(makePrivateFolder(folder.path() / "compositor"))
    , xServer(screen)
    , xWindows(xServer.display())
    , input(xServer.display())
    , tree(buses.accessibilityAddress())
    , trayItems(buses.sessionAddress())
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
    compositor = std::make_unique<ChildProcess>(
        "/usr/bin/sway",
        ChildSettings{
            .arguments = {"--config", configurationFile.string()},
            .environment = variables,
            .beforeStart =
                [] {
                    becomeUnprivilegedUser();
                    // After it, for a new user forgets the bond.
                    dieWithParent();
                },
        });
    std::istringstream line(compositor->readLine().value_or(""));
    std::string serving;
    std::string socket;
    line >> serving >> socket >> controlSocket;
    EXPECT_EQ(serving, "serving") << compositor->errors();
    waylandDisplay = compositorFolder / socket;
    ownClipboard = std::make_unique<WaylandClipboard>(environment());
    startBar();
}

SwaySession::~SwaySession()
{
    // What the compositor would take with it, and says so, is ended before.
    bar.reset();
    ownClipboard.reset();
}

std::map<std::string, std::optional<std::string>> SwaySession::environment() const
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

void SwaySession::startBar()
{
    bar = std::make_unique<ChildProcess>(
        "/usr/bin/swaybar",
        ChildSettings{
            .arguments = {"--bar_id", "main", "--socket", controlSocket},
            .environment = environment(),
            .beforeStart = dieWithParent,
        });
    EXPECT_TRUE(awaitWithPolling([this] { return trayItems.hasHost(); })) << bar->errors();
}

void SwaySession::stopBar()
{
    bar->terminate();
    bar.reset();
    EXPECT_TRUE(awaitWithPolling([this] { return !trayItems.hasHost(); }));
}

std::vector<SwayWindow> SwaySession::windows() const
{
    const auto tool = runTool(
        "/usr/bin/swaymsg",
        {.arguments = {"--raw", "--type", "get_tree"}, .environment = environment()});
    EXPECT_EQ(tool.status, 0) << tool.errors;
    std::vector<SwayWindow> found;
    collect(QJsonDocument::fromJson(QByteArray::fromStdString(tool.output)).object(), false, found);
    return found;
}

std::vector<SwayWindow> SwaySession::windowsOf(pid_t process) const
{
    auto found = windows();
    std::erase_if(found, [process](const SwayWindow& one) { return one.process != process; });
    return found;
}

void SwaySession::command(const std::string& text) const
{
    const auto tool =
        runTool("/usr/bin/swaymsg", {.arguments = {"--", text}, .environment = environment()});
    EXPECT_EQ(tool.status, 0) << text << ": " << tool.output << tool.errors;
}

bool SwaySession::showsIcon() const
{
    constexpr QPoint inTheMiddle(500, 2);
    constexpr QSize line(24, 20);
    constexpr int half = 6;
    const QRect icon(onlyIcon - QPoint(half, half), onlyIcon + QPoint(half, half));
    // The bar is there, and it is not empty.
    return xWindows.colorsIn({inTheMiddle, line}) == 1 && xWindows.colorsIn(icon) > 1;
}

std::unique_ptr<ChildProcess> SwaySession::openOtherApplication() const
{
    auto application = std::make_unique<ChildProcess>(
        ORLIMO_DESKTOP_PROBE,
        ChildSettings{
            .arguments = {"window"},
            .environment = environment(),
            .beforeStart = dieWithParent,
        });
    EXPECT_TRUE(application->awaitLine("focused")) << application->errors();
    return application;
}

} // namespace orlimo
