#include "platform/desktop/macos/ScreenGeometry.h"

#import <AppKit/AppKit.h>

namespace orlimo {

QRect toQtGeometry(NSRect rectangle)
{
    const QRectF upwards(
        NSMinX(rectangle), NSMinY(rectangle), NSWidth(rectangle), NSHeight(rectangle));
    return flipped(upwards, topOfPrimaryScreen()).toRect();
}

QRectF flipped(const QRectF& rectangle, double top)
{
    return {QPointF(rectangle.left(), top - rectangle.bottom()), rectangle.size()};
}

double topOfPrimaryScreen()
{
    // Not mainScreen, which is the one with the focus.
    NSScreen* const primary = [[NSScreen screens] firstObject];
    return primary == nil ? 0 : NSMaxY([primary frame]);
}

} // namespace orlimo
