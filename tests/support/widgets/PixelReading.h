#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRect>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace orlimo {

/// The pixels of `pixmap` with premultiplied alpha, one point each.
[[nodiscard]] inline QImage pixelsOf(const QPixmap& pixmap)
{
    QImage pixels = pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    pixels.setDevicePixelRatio(1);
    return pixels;
}

/// The smallest rectangle that holds every pixel that is at least half opaque.
[[nodiscard]] inline QRect inkOf(const QImage& pixels)
{
    QRect ink;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            if (qAlpha(pixels.pixel(x, y)) >= 128) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

/// `shape` with everything in it drawn in `tint`.
[[nodiscard]] inline QImage tintedShape(const QImage& shape, const QColor& tint)
{
    QImage pixels(shape.size(), QImage::Format_ARGB32_Premultiplied);
    pixels.fill(tint);
    QPainter painter(&pixels);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, shape);
    return pixels;
}

/// Whether no channel of any pixel of the two, which have one format, differs by more than rounding
/// does.
[[nodiscard]] inline bool isVisuallyEqual(const QImage& one, const QImage& other)
{
    const auto bytes = [](const QImage& image) {
        return std::span(image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
    };
    return one.size() == other.size() &&
           std::ranges::equal(bytes(one), bytes(other), [](uchar left, uchar right) {
               return std::abs(left - right) <= 1;
           });
}

} // namespace orlimo
