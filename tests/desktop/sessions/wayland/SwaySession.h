#pragma once

#include "tests/desktop/sessions/AccessibilityTree.h"
#include "tests/desktop/sessions/TrayItems.h"
#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"
#include "tests/desktop/sessions/x11/XInput.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/desktop/sessions/x11/XWindows.h"

#include <QPoint>
#include <QRect>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A window as the compositor knows it.
struct SwayWindow
{
    std::int64_t process = 0;
    std::string title;
    /// What the program calls itself to the compositor.
    std::string appId;
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
    [[nodiscard]] static std::string skipReason();

    /// Starts everything and waits until it serves; what does not start is a test failure.
    SwaySession();
    ~SwaySession();

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    [[nodiscard]] WaylandClipboard& clipboard() { return *ownClipboard; }
    [[nodiscard]] const AccessibilityTree& accessibility() const { return tree; }
    [[nodiscard]] const TrayItems& tray() const { return trayItems; }

    /// Shows the bar and waits until its tray takes icons.
    void startBar();
    /// Takes the bar away, and with it the tray.
    void stopBar();

    /// The windows that can be seen.
    [[nodiscard]] std::vector<SwayWindow> windows() const;
    [[nodiscard]] std::vector<SwayWindow> windowsOf(pid_t process) const;

    /// Has the compositor carry out a command of its own; one that it refuses is a test failure.
    void command(const std::string& text) const;

    void movePointer(const QPoint& point) const { input.movePointer(point); }

    /// Moves the pointer to `point` of the screen and presses `button`: 1 left, 2 middle, 3 right.
    void click(const QPoint& point, int button = 1) const { input.click(point, button); }

    /// Presses and releases keys, named as X names them.
    void press(const std::string& keys) const { input.press(keys); }

    /// Another application's window with the focus, until the returned process ends.
    [[nodiscard]] std::unique_ptr<ChildProcess> openOtherApplication() const;

    /// Whether the bar shows anything where the only icon is.
    [[nodiscard]] bool showsIcon() const;

    /// The middle of the only icon in the tray.
    static constexpr QPoint onlyIcon{1012, 12};

private:
    std::filesystem::path compositorFolder;
    XServer xServer;
    XWindows xWindows;
    XInput input;
    AccessibilityTree tree;
    TrayItems trayItems;
    std::string waylandDisplay;
    std::string controlSocket;
    std::unique_ptr<WaylandClipboard> ownClipboard;
    std::unique_ptr<ChildProcess> bar;
};

} // namespace orlimo
