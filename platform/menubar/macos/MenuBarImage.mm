#include "platform/menubar/macos/MenuBarImage.h"

#include "platform/menubar/macos/BitmapImage.h"

#include <QImage>
#include <QPainter>

namespace orlimo {

namespace {

constexpr NSSize sizeInPoints = {menuBarImageEdge, menuBarImageEdge};

QImage drawn(const QIcon& label, int pixelsPerPoint)
{
    const QSize points(menuBarImageEdge, menuBarImageEdge);
    QImage canvas(points * pixelsPerPoint, QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(pixelsPerPoint);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    label.paint(&painter, QRect(QPoint(0, 0), points));
    return canvas;
}

} // namespace

Retained<NSImage*> menuBarImage(const QIcon& label)
{
    auto image = Retained<NSImage*>::adopt([[NSImage alloc] initWithSize:sizeInPoints]);
    for (const int pixelsPerPoint : {1, 2}) {
        const auto bitmap = toBitmap(drawn(label, pixelsPerPoint));
        if (bitmap) {
            [bitmap.get() setSize:sizeInPoints];
            [image.get() addRepresentation:bitmap.get()];
        }
    }
    [image.get() setTemplate:label.isMask() ? YES : NO];
    return image;
}

} // namespace orlimo
