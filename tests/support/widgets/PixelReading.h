#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRect>

namespace orlimo {

/// The pixels of `pixmap` with premultiplied alpha, one point each.
[[nodiscard]] QImage pixelsOf(const QPixmap& pixmap);

/// The smallest rectangle that holds every pixel that is at least half opaque.
[[nodiscard]] QRect inkOf(const QImage& pixels);

/// Which part of the pixels, from 0 to 1, is either fully opaque or fully transparent: the larger,
/// the less of the drawing's edges is smeared over two pixels.
[[nodiscard]] double crispPixelRatio(const QImage& pixels);

/// What becomes of `shape` when everything in it is drawn in `tint`.
[[nodiscard]] QImage tintedShape(const QImage& shape, const QColor& tint);

/// Whether no channel of any pixel of the two differs by more than rounding does.
[[nodiscard]] bool isVisuallyEqual(const QImage& one, const QImage& other);

/// How far two opaque colours are apart in brightness, from 1 (equal) to 21 (black and white), as
/// accessibility guidelines count it.
[[nodiscard]] double contrastOf(const QColor& one, const QColor& other);

} // namespace orlimo
