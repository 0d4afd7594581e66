#include "platform/desktop/Screen.h"
#include "platform/desktop/macos/ScreenGeometry.h"

#import <AppKit/AppKit.h>

namespace orlimo {

std::optional<QRect> mainScreenFrame()
{
    @autoreleasepool {
        NSScreen* const screen = [NSScreen mainScreen];
        return screen == nil ? std::nullopt : std::optional(toQtGeometry([screen frame]));
    }
}

QRectF fromSystemCoordinates(const QRectF& rectangle)
{
    @autoreleasepool {
        return flipped(rectangle, topOfPrimaryScreen());
    }
}

} // namespace orlimo
