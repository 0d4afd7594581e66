#include "tests/support/widgets/PixelReading.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace orlimo {

namespace {

using Channels = std::array<int, 4>;

Channels channelsOf(QRgb pixel)
{
    return {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)};
}

/// The pixel as it is stored, with the color multiplied by the alpha.
QRgb storedPixel(const QImage& pixels, int x, int y)
{
    return reinterpret_cast<const QRgb*>(pixels.constScanLine(y))[x];
}

} // namespace

QImage pixelsOf(const QPixmap& pixmap)
{
    QImage pixels = pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    pixels.setDevicePixelRatio(1);
    return pixels;
}

QRect inkOf(const QImage& pixels)
{
    QRect ink;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            if (qAlpha(storedPixel(pixels, x, y)) >= 128) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

QImage tintedShape(const QImage& shape, const QColor& tint)
{
    QImage pixels(shape.size(), QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            QColor color = tint;
            color.setAlphaF(
                tint.alphaF() * static_cast<float>(qAlpha(storedPixel(shape, x, y))) / 255.0F);
            pixels.setPixelColor(x, y, color);
        }
    }
    return pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

bool isVisuallyEqual(const QImage& one, const QImage& other)
{
    if (one.size() != other.size()) {
        return false;
    }
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const Channels left = channelsOf(storedPixel(one, x, y));
            const Channels right = channelsOf(storedPixel(other, x, y));
            const bool same = std::equal(left.begin(), left.end(), right.begin(), [](int a, int b) {
                return std::abs(a - b) <= 1;
            });
            if (!same) {
                return false;
            }
        }
    }
    return true;
}

} // namespace orlimo
