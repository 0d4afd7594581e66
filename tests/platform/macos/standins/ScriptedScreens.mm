// The screens that the script says there are.

#include "tests/platform/macos/standins/ScriptedAppKit.h"

using orlimo::scriptedAppKit;

@interface ScriptedScreen : NSScreen {
    NSRect place;
}
+ (NSScreen*)screenAt:(NSRect)frame;
@end

@implementation NSScreen

+ (NSArray<NSScreen*>*)screens
{
    NSMutableArray<NSScreen*>* const screens = [NSMutableArray array];
    for (const NSRect& frame : scriptedAppKit().screens) {
        [screens addObject:[ScriptedScreen screenAt:frame]];
    }
    return screens;
}

+ (NSScreen*)mainScreen
{
    const auto& script = scriptedAppKit();
    return script.mainScreen ? [ScriptedScreen screenAt:script.screens.at(*script.mainScreen)]
                             : nil;
}

@end

@implementation ScriptedScreen

+ (NSScreen*)screenAt:(NSRect)frame
{
    ScriptedScreen* const screen = [[[ScriptedScreen alloc] init] autorelease];
    screen->place = frame;
    return screen;
}

- (NSRect)frame
{
    return place;
}

@end
