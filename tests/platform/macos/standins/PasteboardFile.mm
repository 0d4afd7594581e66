// The general pasteboard as a file, which a test reads from outside of the program: its name stands
// in the environment. Without one what is pasted goes nowhere.

#include <cstdlib>
#include <fstream>

#import <AppKit/AppKit.h>

namespace {

void writePasteboard(const char* text)
{
    const char* const name = std::getenv("ORLIMO_TEST_PASTEBOARD");
    if (name != nullptr) {
        std::ofstream(name, std::ios::binary | std::ios::trunc) << text;
    }
}

} // namespace

NSString* const NSPasteboardTypeString = @"NSPasteboardTypeString";

@implementation NSPasteboard

+ (NSPasteboard*)generalPasteboard
{
    static NSPasteboard* const pasteboard = [[NSPasteboard alloc] init];
    return pasteboard;
}

- (int)declareTypes:(NSArray*)types owner:(id)owner
{
    writePasteboard("");
    return 1;
}

- (BOOL)setString:(NSString*)text forType:(NSString*)type
{
    writePasteboard([text UTF8String]);
    return YES;
}

@end
