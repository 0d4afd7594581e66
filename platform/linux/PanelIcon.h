#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

namespace orlimo {

/// The colour of text on the desktop's panel. `desktop` is what XDG_CURRENT_DESKTOP says, names
/// with colons between; the panels of GNOME and sway are dark in light schemes too, the others
/// follow the scheme.
[[nodiscard]] QColor panelTextColor(const QString& desktop, const QPalette& palette);

/// `icon` as the panel is to show it: a template is painted in `color`, at all its sizes; any other
/// icon stays as it is.
[[nodiscard]] QIcon panelIcon(const QIcon& icon, const QColor& color);

} // namespace orlimo
