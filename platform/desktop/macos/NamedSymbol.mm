#include "platform/desktop/SystemSymbol.h"
#include "platform/menubar/macos/BitmapImage.h"
#include "platform/process/macos/StringConversion.h"

#include <QImage>
#include <QPainter>

#include <cmath>

#import <AppKit/AppKit.h>

namespace orlimo {

namespace {

/// The autoreleased symbol as the system draws it beside text of that size; nil if there is none.
NSImage* symbolNamed(QStringView name, int pixelSize)
{
    if (pixelSize <= 0) {
        return nil;
    }
    NSImage* const symbol =
        [NSImage imageWithSystemSymbolName:toNSString(name.toUtf8().toStdString())
                  accessibilityDescription:nil];
    return
        [symbol imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                                 configurationWithPointSize:pixelSize
                                                                     weight:NSFontWeightRegular]];
}

/// The symbol's size, rounded up to whole points.
QSize sizeOf(NSImage* symbol)
{
    if (symbol == nil) {
        return {0, 0};
    }
    const NSSize size = [symbol size];
    return {static_cast<int>(std::ceil(size.width)), static_cast<int>(std::ceil(size.height))};
}

/// Draws the symbol centred in `pixels`, at its own size.
void draw(NSImage* symbol, QSize pixels, qreal pixelsPerPoint)
{
    const NSSize size = [symbol size];
    const NSSize drawn = NSMakeSize(size.width * pixelsPerPoint, size.height * pixelsPerPoint);
    [symbol drawInRect:NSMakeRect(
                           (pixels.width() - drawn.width) / 2,
                           (pixels.height() - drawn.height) / 2,
                           drawn.width,
                           drawn.height)
              fromRect:NSZeroRect
             operation:NSCompositingOperationSourceOver
              fraction:1];
}

/// The symbol's shape, in whatever colour the system gives it.
QImage shapeOf(NSImage* symbol, QSize pixels, qreal pixelsPerPoint)
{
    // The bitmap's size in points stays its number of pixels, so that the context does not scale.
    const auto bitmap = makeBitmap(pixels);
    NSGraphicsContext* const context =
        bitmap ? [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap.get()] : nil;
    if (context == nil) {
        return {};
    }
    [NSGraphicsContext saveGraphicsState];
    [NSGraphicsContext setCurrentContext:context];
    draw(symbol, pixels, pixelsPerPoint);
    [context flushGraphics];
    [NSGraphicsContext restoreGraphicsState];
    return toImage(bitmap.get());
}

} // namespace

QPixmap systemSymbol(QStringView name, int pixelSize, const QColor& color, qreal devicePixelRatio)
{
    @autoreleasepool {
        NSImage* const symbol = symbolNamed(name, pixelSize);
        const QSize pixels = (QSizeF(sizeOf(symbol)) * devicePixelRatio).toSize();
        QImage image = pixels.isEmpty() ? QImage() : shapeOf(symbol, pixels, devicePixelRatio);
        if (image.isNull()) {
            return {};
        }
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
        painter.end();
        QPixmap pixmap = QPixmap::fromImage(std::move(image));
        pixmap.setDevicePixelRatio(devicePixelRatio);
        return pixmap;
    }
}

QSize systemSymbolSize(QStringView name, int pixelSize)
{
    @autoreleasepool {
        return sizeOf(symbolNamed(name, pixelSize));
    }
}

} // namespace orlimo
