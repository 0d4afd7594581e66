#pragma once

#include <string_view>

#include <xcb/xcb.h>

namespace orlimo {

/// The connection of Qt's xcb platform, owned by Qt; null on other platforms. Requires the
/// application object. Main thread.
[[nodiscard]] xcb_connection_t* x11Connection();

/// The number of the screen that DISPLAY names; 0 if it names none.
[[nodiscard]] int x11ScreenNumber();

/// The root window of a screen.
[[nodiscard]] xcb_window_t x11Root(xcb_connection_t* connection, int screen);

/// The atom for `name`; a round trip to the server.
[[nodiscard]] xcb_atom_t x11Atom(xcb_connection_t* connection, std::string_view name);

/// The child of `root` that is or contains `window`; none if the window is gone.
[[nodiscard]] xcb_window_t
x11TopLevelOf(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window);

} // namespace orlimo
