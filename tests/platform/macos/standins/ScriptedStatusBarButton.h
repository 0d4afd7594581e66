#pragma once

#include "tests/platform/macos/standins/ScriptedAppKit.h"

/// The button of an item in the menu bar, as tests press it.
@interface ScriptedStatusBarButton : NSStatusBarButton {
    NSImage* image;
    NSString* toolTip;
    NSString* label;
    NSWindow* window;
    id target;
    SEL action;
    NSEventMask actingEvents;
    BOOL isHighlighted;
}
/// An event of the mouse reaches the button, which acts on it if it was told to.
- (void)receive:(NSEventType)type;
/// An aid to accessibility presses the button.
- (void)press;
- (NSString*)accessibilityLabel;
- (BOOL)isHighlighted;
@end
