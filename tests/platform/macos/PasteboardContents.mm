#include "tests/platform/PasteboardContents.h"

#include "platform/macos/StringConversion.h"

#import <AppKit/AppKit.h>

namespace orlimo::contents {

std::string text()
{
    @autoreleasepool {
        return toUtf8([[NSPasteboard generalPasteboard] stringForType:NSPasteboardTypeString]);
    }
}

std::vector<std::string> types()
{
    @autoreleasepool {
        std::vector<std::string> names;
        // In GNUstep the list is the server's own, which is asked for each.
        NSArray<NSString*>* const types = [[NSPasteboard generalPasteboard] types];
        for (NSUInteger index = 0; index < [types count]; ++index) {
            names.push_back(toUtf8([types objectAtIndex:index]));
        }
        return names;
    }
}

std::vector<std::string> typesOfText()
{
    @autoreleasepool {
        return {toUtf8(NSPasteboardTypeString)};
    }
}

void fill()
{
    @autoreleasepool {
        NSPasteboard* const pasteboard = [NSPasteboard generalPasteboard];
        [pasteboard declareTypes:@[ NSPasteboardTypeString, NSPasteboardTypeHTML ] owner:nil];
        [pasteboard setString:@"old text" forType:NSPasteboardTypeString];
        [pasteboard setString:@"<b>old text</b>" forType:NSPasteboardTypeHTML];
    }
}

} // namespace orlimo::contents
