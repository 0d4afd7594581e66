#include "tests/desktop/sessions/wayland/MutterSession.h"

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <system_error>

namespace orlimo {

namespace {

constexpr const char* waylandDisplay = "wayland-mutter";

constexpr const char* socketFolder = "/tmp/.X11-unix";

constexpr auto worldReadable = std::filesystem::perms::all | std::filesystem::perms::sticky_bit;

/// Makes the folder of X servers' sockets what it is on a machine that was started as usual,
/// for the compositor's X server refuses any other. Other X servers make it less open where they
/// find none. Somebody else's is left as it is.
void openSocketFolder()
{
    std::error_code ignored;
    std::filesystem::create_directory(socketFolder, ignored);
    std::filesystem::permissions(socketFolder, worldReadable, ignored);
}

bool isSocketFolderOpen()
{
    return std::filesystem::status(socketFolder).permissions() == worldReadable;
}

/// What follows `lead` in `text`, up to a character of `ends`.
std::string tokenAfter(const std::string& lead, const std::string& text, const char* ends)
{
    const std::size_t found = text.find(lead);
    if (found == std::string::npos) {
        return "";
    }
    const std::size_t start = found + lead.size();
    return text.substr(start, text.find_first_of(ends, start) - start);
}

/// The file with which programs show the X server that they may use it.
std::filesystem::path authorityIn(const std::filesystem::path& runtimeFolder)
{
    for (const auto& entry : std::filesystem::directory_iterator(runtimeFolder)) {
        if (entry.path().filename().string().starts_with(".mutter-Xwaylandauth.")) {
            return entry.path();
        }
    }
    return {};
}

} // namespace

std::string MutterSession::skipReason()
{
    openSocketFolder();
    const std::string missing = missingProgram({"/usr/bin/mutter", "/usr/bin/Xwayland"});
    return missing.empty() && !isSocketFolderOpen() ? "/tmp/.X11-unix is not open to everybody"
                                                    : missing;
}

MutterSession::MutterSession()
    : tree(buses.accessibilityAddress())
{
    auto variables = environment();
    variables.erase("WAYLAND_DISPLAY");
    variables["GSETTINGS_BACKEND"] = "memory";
    compositor = std::make_unique<ChildProcess>(
        "/usr/bin/mutter",
        ChildSettings{
            .arguments =
                {"--wayland",
                 "--headless",
                 "--virtual-monitor",
                 "1280x800",
                 "--wayland-display",
                 waylandDisplay},
            .environment = variables,
            .beforeStart = dieWithParent,
        });
    EXPECT_TRUE(awaitWithPolling([this] {
        xDisplay = tokenAfter("Using public X11 display ", compositor->errors(), ",");
        xAuthority = authorityIn(runtimeFolder);
        return !xDisplay.empty() && std::filesystem::exists(runtimeFolder / waylandDisplay);
    })) << compositor->errors();
    ownClipboard = std::make_unique<MutterClipboard>(buses.sessionAddress());
}

std::map<std::string, std::optional<std::string>> MutterSession::environment() const
{
    auto variables = environmentOf("GNOME");
    variables["WAYLAND_DISPLAY"] = waylandDisplay;
    if (!xDisplay.empty()) {
        variables["DISPLAY"] = xDisplay;
        variables["XAUTHORITY"] = xAuthority.string();
    }
    return variables;
}

void MutterSession::copy(const std::string& text) const
{
    copyWithXclip(environment(), "clipboard", text);
    std::optional<std::string> found;
    EXPECT_TRUE(awaitWithPolling([&] { return (found = ownClipboard->paste()) == text + "\n"; }))
        << "instead of \"" << text << "\" it holds " << found.value_or("nothing");
}

} // namespace orlimo
