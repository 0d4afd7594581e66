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

/// Watches on the X server why a window loses the focus: while the window is shown, sees each press
/// of a mouse button, wherever it is, and where the pointer is when the focus goes. The focus has
/// followed the pointer when nothing was pressed, and the pointer is in the window that has the
/// focus now, and that window is not a new one. Main thread; needs the application object, on Qt's
/// xcb platform.
class X11Focus final : public QObject, private QAbstractNativeEventFilter
{
public:
    /// Called in the event loop at each press, with its place on the screen in points.
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
    /// Those that were there when the window got the focus.
    std::vector<xcb_window_t> topLevels;
    FocusLoss loss = FocusLoss::deliberate;
};

} // namespace orlimo
