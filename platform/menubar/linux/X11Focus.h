#pragma once

#include "platform/menubar/FocusLoss.h"
#include "platform/threads/UptimeClock.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPoint>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace orlimo {

/// Finds out on the X server why a window loses the focus. While the window is shown, observes each
/// press of a mouse button anywhere, and the pointer's position when the focus is lost. The focus
/// has followed the pointer if nothing was pressed and the pointer is in the newly focused window,
/// which is not a new one. Main thread; requires the application object, on Qt's xcb platform.
class X11Focus final : public QObject, private QAbstractNativeEventFilter
{
public:
    /// Called in the event loop at each press, with its position on the screen in points.
    using PressHandler = std::function<void(const QPoint&)>;

    /// `window` must outlive this object.
    X11Focus(QWidget& window, PressHandler pressHandler, UptimeClock uptimeClock);
    X11Focus(const X11Focus&) = delete;
    X11Focus& operator=(const X11Focus&) = delete;
    ~X11Focus() override = default;

    /// Why the window has lost the focus; never `unknown`.
    [[nodiscard]] FocusLoss lastLoss() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void selectPresses(bool areSelected) const;
    [[nodiscard]] bool isPress(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool isFocusChange(const xcb_generic_event_t& event) const;
    void recordTopLevels();
    [[nodiscard]] bool wasJustPressed() const;
    [[nodiscard]] bool isPointerInFocusedWindow() const;
    [[nodiscard]] bool isAnotherWindowActive() const;

    QWidget& content;
    PressHandler handlePress;
    UptimeClock clock;
    xcb_connection_t* connection;
    xcb_window_t root;
    xcb_atom_t activeWindow;
    std::uint8_t inputExtension = 0;
    std::optional<Uptime> lastPress;
    /// Those that existed when the window received the focus.
    std::vector<xcb_window_t> topLevels;
    FocusLoss loss = FocusLoss::deliberate;
};

} // namespace orlimo
