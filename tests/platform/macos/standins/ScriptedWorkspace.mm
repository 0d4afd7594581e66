// Who opens addresses: notes them.

#include "tests/platform/macos/standins/ScriptedAppKit.h"

using orlimo::scriptedAppKit;

@implementation NSWorkspace

+ (NSWorkspace*)sharedWorkspace
{
    static NSWorkspace* const workspace = [[NSWorkspace alloc] init];
    return workspace;
}

- (BOOL)openURL:(NSURL*)url
{
    scriptedAppKit().openedAddresses.emplace_back([[url absoluteString] UTF8String]);
    return scriptedAppKit().addressesCanBeOpened;
}

@end
