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

/// `shape` with everything in it drawn in `tint`.
[[nodiscard]] QImage tintedShape(const QImage& shape, const QColor& tint);

/// Whether no channel of any pixel of the two differs by more than rounding does.
[[nodiscard]] bool isVisuallyEqual(const QImage& one, const QImage& other);

} // namespace orlimo
