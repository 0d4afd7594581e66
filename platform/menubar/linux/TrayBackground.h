#pragma once

#include <QColor>

#include <optional>

#include <xcb/xcb.h>

namespace orlimo {

/// The color in which an X11 tray paints the place of the icon window `icon`, read off the screen
/// in the corner of that window, which the icon leaves free. None where the screen does not show
/// that corner: another window covers it, or the screen is a Wayland compositor's. Main thread;
/// needs Qt's xcb platform.
[[nodiscard]] std::optional<QColor> trayBackground(xcb_window_t icon);

} // namespace orlimo
