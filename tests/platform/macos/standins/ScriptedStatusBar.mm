// The menu bar, with items that are there while they are known to it.

#include "tests/platform/macos/standins/ScriptedStatusBarButton.h"

#include <vector>

using orlimo::scriptedAppKit;

@interface ScriptedStatusItem : NSStatusItem {
    ScriptedStatusBarButton* button;
}
@end

@implementation NSStatusItem
@end

@implementation ScriptedStatusItem

- (instancetype)init
{
    self = [super init];
    if (self != nil) {
        button = [[ScriptedStatusBarButton alloc] init];
    }
    return self;
}

- (void)dealloc
{
    std::erase(scriptedAppKit().statusItems, self);
    [button release];
    [super dealloc];
}

- (NSStatusBarButton*)button
{
    return button;
}

- (BOOL)isVisible
{
    return scriptedAppKit().statusItemsAreVisible;
}

@end

@implementation NSStatusBar

+ (NSStatusBar*)systemStatusBar
{
    static NSStatusBar* const bar = [[NSStatusBar alloc] init];
    return bar;
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length
{
    if (length != NSSquareStatusItemLength) {
        return nil;
    }
    // The bar owns its items not: whoever lets one go takes it out.
    ScriptedStatusItem* const item = [[[ScriptedStatusItem alloc] init] autorelease];
    scriptedAppKit().statusItems.push_back(item);
    return item;
}

- (void)removeStatusItem:(NSStatusItem*)item
{
    std::erase(scriptedAppKit().statusItems, item);
}

@end
