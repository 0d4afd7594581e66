#pragma once

#include <QColor>

#include <optional>

#include <xcb/xcb.h>

namespace orlimo {

/// The color that an X11 tray paints behind the icon window `icon`, read from the screen in the
/// corner of that window, which the icon leaves free. None if the corner is not visible on the
/// screen: another window covers it, or the screen is a Wayland compositor's. Main thread; requires
/// Qt's xcb platform.
[[nodiscard]] std::optional<QColor> trayBackground(xcb_window_t icon);

} // namespace orlimo
