#pragma once

#include <QPalette>

namespace orlimo {

/// A palette as a desktop with light or dark windows hands it to its programs.
[[nodiscard]] QPalette desktopPalette(bool dark);

} // namespace orlimo
