#pragma once

#include "resources/Contrast.h"

#include <QColor>

class QPalette;

/// The colors of the views, each taken from the palette at the moment of painting, so that a
/// change of scheme is followed at once.
namespace orlimo {

/// How a color is found in the palette of the widget that is painted.
using PaletteColor = QColor (*)(const QPalette& palette);

/// The least contrast at which small text is legible (WCAG 2.1, level AA).
inline constexpr double legibleContrast = 4.5;

/// The least contrast at which lines and shapes can be distinguished from what is beside them
/// (WCAG 2.1, level AA).
inline constexpr double distinctContrast = 3;

/// `color`, made darker or lighter, whichever leads away from `background`, by as little as it
/// takes to be legible on it.
[[nodiscard]] QColor legibleColor(const QColor& color, const QColor& background);

/// `color`, made darker or lighter by as little as it takes to be distinct on the window and on the
/// surfaces in it.
[[nodiscard]] QColor distinctColor(const QColor& color, const QPalette& palette);

/// `color` laid over the opaque `background`.
[[nodiscard]] QColor blended(const QColor& color, const QColor& background);

/// The opaque color between two, `fraction` of the distance from the first: 0 to 1.
[[nodiscard]] QColor mixed(const QColor& from, const QColor& to, double fraction);

/// Whether text and window are about as far apart as black and white, as in the palettes made for
/// people with low vision: lines and shapes are to be distinct there, too.
[[nodiscard]] bool isHighContrast(const QPalette& palette);

[[nodiscard]] QColor windowColor(const QPalette& palette);
[[nodiscard]] QColor textColor(const QPalette& palette);
/// The same, of which the background shows through: `opacity` is 0 to 1.
[[nodiscard]] QColor textColor(const QPalette& palette, float opacity);
/// Gray text, legible on the window.
[[nodiscard]] QColor grayColor(const QPalette& palette);
[[nodiscard]] QColor whiteColor(const QPalette& palette);
/// The accent color, dark enough that white text is legible on it.
[[nodiscard]] QColor accentColor(const QPalette& palette);
/// What shows where the keyboard works, distinct on the window: the user's accent as far as that
/// allows.
[[nodiscard]] QColor focusRingColor(const QPalette& palette);
/// A thin line between things. Faint, and distinct in a high-contrast palette, like each of the
/// outlines below.
[[nodiscard]] QColor separatorColor(const QPalette& palette);
/// A surface that stands out a little from the window, and its outline.
[[nodiscard]] QColor surfaceColor(const QPalette& palette);
[[nodiscard]] QColor surfaceBorderColor(const QPalette& palette);
/// The outline of a control, stronger than the others.
[[nodiscard]] QColor controlBorderColor(const QPalette& palette);

} // namespace orlimo
