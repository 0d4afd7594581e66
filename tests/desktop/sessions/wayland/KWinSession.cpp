#include "tests/desktop/sessions/wayland/KWinSession.h"

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

namespace orlimo {

namespace {

constexpr const char* waylandDisplay = "wayland-kwin";

/// Makes a copy of the compositor in `folder`. The installed one has a capability that not every
/// container grants, and where it is not granted does not start; a copy has none. It insists on its
/// name.
std::filesystem::path copyOfCompositor(const std::filesystem::path& folder)
{
    const auto copy = folder / "bin/kwin_wayland";
    std::filesystem::create_directories(copy.parent_path());
    std::filesystem::copy_file("/usr/bin/kwin_wayland", copy);
    return copy;
}

} // namespace

std::string KWinSession::skipReason()
{
    return missingProgram({"/usr/bin/kwin_wayland", "/usr/bin/wl-copy"});
}

KWinSession::KWinSession()
{
    auto variables = environment();
    variables.erase("WAYLAND_DISPLAY");
    // What it stores goes with the desktop.
    variables["HOME"] = (folder.path() / "home").string();
    for (const char* variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
        variables[variable] = std::nullopt;
    }
    compositor = std::make_unique<ChildProcess>(
        copyOfCompositor(folder.path()),
        ChildSettings{
            .arguments =
                {"--virtual",
                 "--no-lockscreen",
                 "--no-global-shortcuts",
                 "--width",
                 "1280",
                 "--height",
                 "800",
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

std::map<std::string, std::optional<std::string>> KWinSession::environment() const
{
    auto variables = environmentOf("KDE");
    variables["KDE_FULL_SESSION"] = "true";
    variables["KDE_SESSION_VERSION"] = "5";
    variables["WAYLAND_DISPLAY"] = waylandDisplay;
    return variables;
}

} // namespace orlimo
