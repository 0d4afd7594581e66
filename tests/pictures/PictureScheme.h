#pragma once

#include <QPalette>

#include <optional>

class QString;

namespace orlimo {

/// A palette as a desktop hands it to its programs: "light", "dark", or for high contrast
/// "black-on-white" or "white-on-black"; none for another name.
[[nodiscard]] std::optional<QPalette> desktopPalette(const QString& scheme);

} // namespace orlimo
