#include "platform/desktop/Workspace.h"

#include "platform/desktop/macos/ScreenGeometry.h"
#include "platform/process/macos/StringConversion.h"

#import <AppKit/AppKit.h>

namespace orlimo {

bool openUrl(const QUrl& url)
{
    @autoreleasepool {
        NSURL* const address = [NSURL URLWithString:toNSString(url.toEncoded().toStdString())];
        return address != nil && [[NSWorkspace sharedWorkspace] openURL:address];
    }
}

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
