#include "tests/desktop/sessions/DesktopSession.h"

#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

namespace orlimo {

DesktopSession::DesktopSession(const std::string& screen)
    : DesktopSession(WithoutTray{}, screen)
{
    startTray({});
    awaitTray();
}

DesktopSession::DesktopSession(WithoutTray /*kind*/, const std::string& screen)
    : runtimeFolder(makePrivateFolder(folder.path() / "runtime"))
    , xServer(screen)
    , buses(runtimeFolder)
    , tree(buses.accessibilityAddress())
    , xWindows(xServer.display())
{
    installOpener();
    windowManager = std::make_unique<ChildProcess>(
        "/usr/bin/openbox",
        ChildSettings{.arguments = {"--sm-disable"}, .environment = environment()});
    EXPECT_TRUE(awaitWithPolling([this] { return xWindows.hasWindowManager(); }))
        << windowManager->errors();
    awaitManagement();
}

void DesktopSession::awaitManagement() const
{
    // What the window manager receives right at its start it may look at only once something more
    // arrives, which is over when it has managed one window.
    {
        const ChildProcess window(
            "/usr/bin/xmessage",
            ChildSettings{.arguments = {"Any window"}, .environment = environment()});
        EXPECT_TRUE(awaitWithPolling([this] { return !xWindows.windowsOf(0).empty(); }))
            << windowManager->errors();
    }
    EXPECT_TRUE(awaitWithPolling([this] { return xWindows.windowsOf(0).empty(); }));
}

void DesktopSession::startTray(const TrayPosition& position)
{
    // As wide from the start as it will be, so that an icon stays where it is first seen.
    startTrayWith(
        {"--edge",
         position.edge,
         "--align",
         position.align,
         "--widthtype",
         "pixel",
         "--width",
         "120",
         "--heighttype",
         "pixel",
         "--height",
         "24",
         "--SetDockType",
         "true",
         "--SetPartialStrut",
         "true"});
}

void DesktopSession::startTrayWith(const std::vector<std::string>& options)
{
    tray = std::make_unique<ChildProcess>(
        "/usr/bin/trayer", ChildSettings{.arguments = options, .environment = environment()});
}

void DesktopSession::awaitTray()
{
    EXPECT_TRUE(awaitWithPolling([this] {
        return xWindows.hasTray() && !xWindows.windowsOf(0).empty();
    })) << tray->errors();
}

void DesktopSession::killTray()
{
    tray.reset();
    EXPECT_TRUE(awaitWithPolling([this] { return !xWindows.hasTray(); }));
}

std::map<std::string, std::optional<std::string>> DesktopSession::environment() const
{
    const std::string searchPath =
        (folder.path() / "bin").string() + ":" + qEnvironmentVariable("PATH").toStdString();
    auto variables = desktopVariables();
    variables["DBUS_SESSION_BUS_ADDRESS"] = buses.sessionAddress();
    variables["DISPLAY"] = xServer.display();
    variables["PATH"] = searchPath;
    variables["QT_QPA_PLATFORM"] = "xcb";
    variables["XDG_RUNTIME_DIR"] = runtimeFolder.string();
    return variables;
}

std::unique_ptr<ChildProcess> DesktopSession::openOtherApplication() const
{
    auto application = std::make_unique<ChildProcess>(
        "/usr/bin/xmessage",
        ChildSettings{
            .arguments = {"-geometry", "600x600+340+100", "Another application"},
            .environment = environment()});
    EXPECT_TRUE(awaitWithPolling([this] {
        const auto active = windows().activeWindow();
        return active && active->title == "xmessage";
    })) << application->errors();
    return application;
}

std::vector<std::string> DesktopSession::openedAddresses() const
{
    const auto list = folder.path() / "opened";
    return std::filesystem::exists(list) ? linesOf(contentOf(list)) : std::vector<std::string>{};
}

void DesktopSession::installOpener() const
{
    const auto opener = folder.path() / "bin/xdg-open";
    writeFile(opener, "#!/bin/sh\necho \"$1\" >>'" + (folder.path() / "opened").string() + "'\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
}

} // namespace orlimo
