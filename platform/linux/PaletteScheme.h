#pragma once

#include "platform/linux/ColorSchemePortal.h"

#include <QPalette>

namespace orlimo {

/// A palette of dark windows, with the accent of `palette`.
[[nodiscard]] QPalette darkPaletteOf(const QPalette& palette);

/// The application's palette, made dark and light again as the user prefers. Only where it is the
/// toolkit's own: a palette that the desktop's theme or the user has chosen stays, and so does the
/// scheme of a toolkit that knows it. Main thread.
class PaletteScheme
{
public:
    void follow(ColorScheme scheme);

private:
    [[nodiscard]] bool isOurs() const;

    bool isDark = false;
};

} // namespace orlimo
