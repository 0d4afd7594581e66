#pragma once

#include <QPalette>

#include <vector>

namespace orlimo {

/// Palettes as a desktop with light or dark windows hands them to its programs.
[[nodiscard]] QPalette lightPalette(const QColor& accent = QColor(53, 132, 228));
[[nodiscard]] QPalette darkPalette(const QColor& accent = QColor(53, 132, 228));

/// What the guidance window makes of either, and palettes for people with low vision.
[[nodiscard]] QPalette guidancePalette(const QColor& accent = QColor(53, 132, 228));
[[nodiscard]] std::vector<QPalette>
highContrastPalettes(const QColor& accent = QColor(53, 132, 228));

/// All of these.
[[nodiscard]] std::vector<QPalette> allPalettes(const QColor& accent = QColor(53, 132, 228));

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
