#pragma once

#include <QPalette>

namespace orlimo {

/// Palettes as a desktop with light or dark windows hands them to its programs.
[[nodiscard]] QPalette lightPalette(const QColor& accent = QColor(53, 132, 228));
[[nodiscard]] QPalette darkPalette(const QColor& accent = QColor(53, 132, 228));

/// Gives the application another palette for as long as it lives.
class PaletteChange
{
public:
    explicit PaletteChange(const QPalette& palette);
    PaletteChange(const PaletteChange&) = delete;
    PaletteChange& operator=(const PaletteChange&) = delete;
    ~PaletteChange();

private:
    QPalette before;
};

} // namespace orlimo
