#include "platform/menubar/macos/BitmapImage.h"

#include <algorithm>
#include <cstring>

namespace orlimo {

namespace {

constexpr QImage::Format pixelFormat = QImage::Format_RGBA8888_Premultiplied;
constexpr NSInteger bytesPerPixel = 4;

std::size_t rowByteCount(NSBitmapImageRep* bitmap)
{
    return static_cast<std::size_t>([bitmap pixelsWide] * bytesPerPixel);
}

} // namespace

Retained<NSBitmapImageRep*> makeBitmap(QSize pixels)
{
    auto bitmap = Retained<NSBitmapImageRep*>::adopt([[NSBitmapImageRep alloc]
        initWithBitmapDataPlanes:nullptr
                      pixelsWide:pixels.width()
                      pixelsHigh:pixels.height()
                   bitsPerSample:8
                 samplesPerPixel:bytesPerPixel
                        hasAlpha:YES
                        isPlanar:NO
                  colorSpaceName:NSDeviceRGBColorSpace
                     bytesPerRow:pixels.width() * bytesPerPixel
                    bitsPerPixel:bytesPerPixel * 8]);
    if (bitmap) {
        std::fill_n(
            [bitmap.get() bitmapData],
            [bitmap.get() bytesPerRow] * [bitmap.get() pixelsHigh],
            static_cast<unsigned char>(0));
    }
    return bitmap;
}

Retained<NSBitmapImageRep*> toBitmap(const QImage& image)
{
    const QImage pixels = image.convertToFormat(pixelFormat);
    auto bitmap = makeBitmap(pixels.size());
    if (bitmap) {
        unsigned char* const data = [bitmap.get() bitmapData];
        for (int row = 0; row < pixels.height(); ++row) {
            std::memcpy(
                data + row * [bitmap.get() bytesPerRow],
                pixels.constScanLine(row),
                rowByteCount(bitmap.get()));
        }
    }
    return bitmap;
}

QImage toImage(NSBitmapImageRep* bitmap)
{
    QImage image(
        static_cast<int>([bitmap pixelsWide]), static_cast<int>([bitmap pixelsHigh]), pixelFormat);
    const unsigned char* const data = [bitmap bitmapData];
    for (int row = 0; row < image.height(); ++row) {
        std::memcpy(image.scanLine(row), data + row * [bitmap bytesPerRow], rowByteCount(bitmap));
    }
    return image;
}

} // namespace orlimo
