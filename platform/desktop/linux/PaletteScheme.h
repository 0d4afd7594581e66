#pragma once

#include "platform/desktop/linux/ColorSchemePortal.h"

#include <QPalette>

namespace orlimo {

/// A palette of dark windows, with the accent of `palette`.
[[nodiscard]] QPalette darkPaletteOf(const QPalette& palette);

/// Makes the application's palette dark, and Qt's own again, as the user prefers. A palette that
/// the desktop's theme or the user has chosen is left alone, and so is a Qt that follows the scheme
/// itself. Main thread.
class PaletteScheme
{
public:
    void follow(ColorScheme scheme);

private:
    [[nodiscard]] bool canSetPalette() const;

    bool isDark = false;
};

} // namespace orlimo
