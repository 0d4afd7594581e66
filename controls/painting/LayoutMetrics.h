#pragma once

#include <cmath>

/// The measures that every view shares, in points.
namespace orlimo::metrics {

/// Around a view that is padded without a number.
inline constexpr int defaultPadding = 16;
/// Between the children of a stack without a number.
inline constexpr int defaultSpacing = 8;

/// The system font's size for ordinary text and in small controls.
inline constexpr int bodyFontSize = 13;
inline constexpr int smallFontSize = 11;

/// The height of one line of text: a fifth more than the font's size, whatever the font asks for,
/// so that a window looks and measures the same in every script.
[[nodiscard]] inline int lineHeight(int fontPixelSize)
{
    return static_cast<int>(std::lround(1.2 * fontPixelSize));
}

} // namespace orlimo::metrics
