#include "platform/desktop/Workspace.h"

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

} // namespace orlimo
