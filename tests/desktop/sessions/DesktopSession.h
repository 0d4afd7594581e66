#pragma once

#include "tests/desktop/sessions/AccessibilityTree.h"
#include "tests/desktop/sessions/SessionBuses.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/desktop/sessions/x11/XWindows.h"
#include "tests/support/TemporaryFolder.h"

#include <QPoint>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A desktop without a display: an X server with a window manager and a tray, a session bus and the
/// accessibility bus, all of its own and ended with the object. What a program on it asks to have
/// opened is noted and not opened.
class DesktopSession
{
public:
    /// Where the tray stands, 24 points thick.
    struct TrayPosition
    {
        /// "top", "bottom", "left" or "right".
        std::string edge = "top";
        /// At which end of the edge, "left" or "right", or in its "center". Left is up on an
        /// upright edge.
        std::string align = "right";
    };

    /// A desktop with no tray.
    struct WithoutTray
    {};

    /// Starts everything and waits until it serves. `screen` is the width, height and depth in the
    /// X server's notation.
    explicit DesktopSession(const std::string& screen);
    explicit DesktopSession(WithoutTray kind, const std::string& screen = "1280x800x24");

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    [[nodiscard]] const XServer& server() const { return xServer; }
    [[nodiscard]] const XWindows& windows() const { return xWindows; }
    [[nodiscard]] const AccessibilityTree& accessibility() const { return tree; }

    /// Starts a tray, and does not wait for it.
    void startTray(const TrayPosition& position);
    /// The same with the tray's own options and, beyond these, its defaults.
    void startTrayWith(const std::vector<std::string>& options);

    /// Waits until the tray takes icons and the window manager has seen it.
    void awaitTray();

    /// Kills the tray and waits until the X server knows.
    void killTray();

    /// What a person does on the X server.
    void movePointer(const QPoint& point) const { xServer.movePointer(point); }
    void click(const QPoint& point, int button = 1) const { xServer.click(point, button); }
    void press(const std::string& keys) const { xServer.press(keys); }

    /// Another application's window over the middle of the screen, in front and with the focus,
    /// until the returned process ends.
    [[nodiscard]] std::unique_ptr<ChildProcess> openOtherApplication() const;

    /// The addresses that programs asked to have opened, the first one first.
    [[nodiscard]] std::vector<std::string> openedAddresses() const;

private:
    void installOpener() const;
    void awaitManagement() const;

    TemporaryFolder folder;
    std::filesystem::path runtimeFolder;
    XServer xServer;
    SessionBuses buses;
    AccessibilityTree tree;
    XWindows xWindows;
    std::unique_ptr<ChildProcess> windowManager;
    std::unique_ptr<ChildProcess> tray;
};

} // namespace orlimo
