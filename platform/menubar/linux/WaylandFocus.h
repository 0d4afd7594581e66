#pragma once

#include "platform/menubar/FocusLoss.h"

#include <QString>

namespace orlimo {

/// What a loss of focus means on a Wayland desktop, where a program receives no events from outside
/// its windows. `desktop` is the value of XDG_CURRENT_DESKTOP. GNOME and KDE Plasma focus windows
/// by click, unless the user of Plasma has changed that in the file `kwinSettings`. On sway and
/// other desktops the focus may follow the pointer.
[[nodiscard]] FocusLoss focusLossOnWayland(const QString& desktop, const QString& kwinSettings);

/// The same for this session.
[[nodiscard]] FocusLoss focusLossOnWayland();

} // namespace orlimo
