#pragma once

#include "platform/desktop/linux/ColorSchemePortal.h"

#include <QPalette>

namespace orlimo {

/// A palette of dark windows, with the accent of `palette`.
[[nodiscard]] QPalette darkPaletteOf(const QPalette& palette);

/// Switches the application's palette between dark and Qt's own as the user prefers. A palette that
/// the desktop's theme or the user has chosen is left alone, as is everything if Qt follows the
/// scheme itself. Main thread.
class PaletteScheme
{
public:
    void follow(ColorScheme scheme);

private:
    [[nodiscard]] bool canSetPalette() const;

    bool isDark = false;
};

} // namespace orlimo
