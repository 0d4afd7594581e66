#pragma once

#include <QColor>

namespace orlimo {

/// How bright an opaque color appears, from 0 (black) to 1 (white), as WCAG 2.1 defines it.
[[nodiscard]] double relativeLuminance(const QColor& color);

/// The contrast between two relative luminances, 1 to 21 (WCAG 2.1).
[[nodiscard]] double contrastOfLuminances(double one, double other);

/// The contrast between two opaque colors, 1 to 21 (WCAG 2.1).
[[nodiscard]] double contrastRatio(const QColor& one, const QColor& other);

} // namespace orlimo
