#pragma once

#include "platform/menubar/FocusLoss.h"

namespace orlimo {

/// What a loss of focus means on a Wayland desktop, where a program receives no events from outside
/// its windows. Which desktop it is, XDG_CURRENT_DESKTOP says. GNOME and KDE Plasma focus windows
/// by click, unless the user of Plasma has changed that in KWin's settings. On sway and other
/// desktops the focus may follow the pointer.
[[nodiscard]] FocusLoss focusLossOnWayland();

} // namespace orlimo
