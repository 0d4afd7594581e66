#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

namespace orlimo {

/// The color of text on the desktop's panel. `desktop` is what XDG_CURRENT_DESKTOP says, names
/// with colons between; the panels of GNOME and sway are dark in light schemes too, the others
/// follow the scheme.
[[nodiscard]] QColor panelTextColor(const QString& desktop, const QPalette& palette);

/// `color` if its contrast to `background` is 3 to 1 or more; otherwise black or white, whichever
/// has the higher contrast.
[[nodiscard]] QColor colorOnPanel(const QColor& color, const QColor& background);

/// The theme name of the installed symbolic icon, which a panel on `desktop` paints in its own
/// color; empty if the icon is not installed, and on sway, whose bar shows a symbolic icon in the
/// color of its file.
[[nodiscard]] QString panelIconName(const QString& desktop);

/// `icon` as the panel is to show it: a template is painted in `color`, at all its sizes, is drawn
/// no larger than 16 by 16 points, and has the icon theme's name `name`; any other icon stays as it
/// is.
[[nodiscard]] QIcon panelIcon(const QIcon& icon, const QColor& color, const QString& name = {});

} // namespace orlimo
