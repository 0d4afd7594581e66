// Views, with what a button in the menu bar needs of them, and windows.

#include "tests/platform/macos/standins/ScriptedStatusBarButton.h"

@implementation NSResponder
@end

@implementation NSView

- (NSWindow*)window
{
    static NSWindow* const theWindow = [[NSWindow alloc] init];
    return theWindow;
}

@end

@implementation NSControl
@end

@implementation NSButton
@end

@implementation NSStatusBarButton
@end

@implementation ScriptedStatusBarButton

- (void)dealloc
{
    [image release];
    [toolTip release];
    [label release];
    [window release];
    [super dealloc];
}

- (void)setImage:(NSImage*)newImage
{
    [newImage retain];
    [image release];
    image = newImage;
}

- (NSImage*)image
{
    return image;
}

- (void)setToolTip:(NSString*)string
{
    [toolTip release];
    toolTip = [string copy];
}

- (NSString*)toolTip
{
    return toolTip;
}

- (void)setAccessibilityLabel:(NSString*)accessibilityLabel
{
    [label release];
    label = [accessibilityLabel copy];
}

- (NSString*)accessibilityLabel
{
    return label;
}

- (void)setTarget:(id)anObject
{
    target = anObject;
}

- (void)setAction:(SEL)aSelector
{
    action = aSelector;
}

- (NSInteger)sendActionOn:(NSInteger)mask
{
    actingEvents = static_cast<NSEventMask>(mask);
    return 0;
}

- (void)highlight:(BOOL)flag
{
    isHighlighted = flag;
}

- (BOOL)isHighlighted
{
    return isHighlighted;
}

- (NSRect)bounds
{
    return NSMakeRect(0, 0, 22, 22);
}

- (NSRect)convertRect:(NSRect)aRect toView:(NSView*)aView
{
    // In its window the button stands a point off the corner.
    return aView == nil ? NSOffsetRect(aRect, 1, 1) : NSZeroRect;
}

- (NSWindow*)window
{
    if (!orlimo::scriptedAppKit().statusItemWindow) {
        return nil;
    }
    if (window == nil) {
        window = [[NSWindow alloc] init];
    }
    return window;
}

- (void)receive:(NSEventType)type
{
    if ((actingEvents & (1ULL << type)) != 0) {
        [self press];
    }
}

- (void)press
{
    [target performSelector:action withObject:self];
}

@end

@implementation NSWindow

- (void)setHidesOnDeactivate:(BOOL)flag
{
    orlimo::scriptedAppKit().windowHidesOnDeactivate = flag;
}

- (void)setCollectionBehavior:(NSWindowCollectionBehavior)props
{
    orlimo::scriptedAppKit().windowBehavior = props;
}

- (void)orderFrontRegardless
{
    ++orlimo::scriptedAppKit().windowsOrderedFront;
}

- (NSRect)convertRectToScreen:(NSRect)aRect
{
    const NSRect frame = orlimo::scriptedAppKit().statusItemWindow.value_or(NSZeroRect);
    return NSOffsetRect(aRect, NSMinX(frame), NSMinY(frame));
}

@end
