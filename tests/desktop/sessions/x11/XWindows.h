#pragma once

#include <QColor>
#include <QImage>
#include <QMargins>
#include <QPoint>
#include <QRect>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace orlimo {

/// A window on an X server, as it was when it was asked for.
struct XWindow
{
    std::uint32_t id = 0;
    /// The process that made it; 0 when it does not say.
    std::uint32_t process = 0;
    std::string title{};
    /// What the program draws, without a frame, in pixels of the screen.
    QRect area{};
    /// How far the window manager's frame stands out around that.
    QMargins frame{};
    /// Whether the user may change its size.
    bool resizable = true;
    /// Whether the program asks for a button that closes it, and for one that minimises it.
    bool closable = true;
    bool minimizable = true;
};

/// The windows on an X server, looked at from outside of the programs that own them.
class XWindows
{
public:
    /// Connects to the server `display`; no connection is a test failure.
    explicit XWindows(const std::string& display);

    /// Whether a window manager manages the screen.
    [[nodiscard]] bool hasWindowManager() const;

    /// Whether a tray takes icons.
    [[nodiscard]] bool hasTray() const;

    /// The windows of `process` that the window manager knows and that can be seen, the lowest
    /// first. Of every process when it is 0.
    [[nodiscard]] std::vector<XWindow> windowsOf(std::uint32_t process) const;

    /// The window with the focus.
    [[nodiscard]] std::optional<XWindow> activeWindow() const;

    /// Where the icon of `process` is in the tray. None as long as it is not docked.
    [[nodiscard]] std::optional<QRect> trayIconOf(std::uint32_t process) const;

    /// Where the menu of `process` is that pops up without the window manager. None as long as
    /// there is none.
    [[nodiscard]] std::optional<QRect> menuOf(std::uint32_t process) const;

    /// What the screen shows in `area`; null where that is off the screen.
    [[nodiscard]] QImage picture(const QRect& area) const;

    /// How many colours the screen shows in `area`.
    [[nodiscard]] std::size_t colorsIn(const QRect& area) const;

    /// Has the tray publish `textColor` as the color of its text and symbols.
    void publishTrayColor(const QColor& textColor) const;

private:
    /// Sends the window manager a change that means nothing. It may leave what it received while it
    /// was busy until something more arrives; so each look at windows does this.
    void triggerPropertyChange() const;

    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
    [[nodiscard]] xcb_window_t tray() const;
    template <typename Value>
    [[nodiscard]] std::vector<Value> values(xcb_window_t window, const std::string& property) const;
    [[nodiscard]] std::vector<std::uint32_t>
    numbers(xcb_window_t window, const std::string& property) const;
    [[nodiscard]] bool belongsTo(xcb_window_t window, std::uint32_t process) const;
    [[nodiscard]] std::string text(xcb_window_t window, const std::string& property) const;
    [[nodiscard]] bool isViewable(xcb_window_t window) const;
    [[nodiscard]] std::optional<QRect> areaOf(xcb_window_t window) const;
    [[nodiscard]] std::vector<xcb_window_t> childrenOf(xcb_window_t window) const;
    [[nodiscard]] std::optional<XWindow> describe(xcb_window_t window) const;
    [[nodiscard]] std::optional<QRect> embeddedIn(xcb_window_t window, std::uint32_t process) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    xcb_window_t root = XCB_NONE;
};

} // namespace orlimo
