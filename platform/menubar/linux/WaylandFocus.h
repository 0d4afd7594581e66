#pragma once

#include "platform/menubar/FocusLoss.h"

#include <QString>

namespace orlimo {

/// What a loss of the focus means on a Wayland desktop, which tells a program nothing of what
/// happens outside its windows. `desktop` is what XDG_CURRENT_DESKTOP says. On GNOME and KDE Plasma
/// windows get the focus by a click; the file `kwinSettings` says where Plasma's user wants it
/// otherwise. On sway and the other desktops the focus may follow the pointer.
[[nodiscard]] FocusLoss focusLossOnWayland(const QString& desktop, const QString& kwinSettings);

/// The same for this session.
[[nodiscard]] FocusLoss focusLossOnWayland();

} // namespace orlimo
