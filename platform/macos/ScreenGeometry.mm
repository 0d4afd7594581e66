#include "platform/macos/ScreenGeometry.h"

#import <AppKit/AppKit.h>

namespace orlimo {

QRect toToolkitGeometry(NSRect rectangle)
{
    // Not mainScreen, which is the one with the focus.
    NSScreen* const primary = [[NSScreen screens] firstObject];
    const double top = primary == nil ? 0 : NSMaxY([primary frame]);
    return QRectF(
               NSMinX(rectangle), top - NSMaxY(rectangle), NSWidth(rectangle), NSHeight(rectangle))
        .toRect();
}

} // namespace orlimo
