// An item of the menu bar, which shows itself by a button.
#pragma once

#import <AppKit/NSStatusBarButton.h>
#import <AppKit/NSStatusItem.h>

/// AppKit
@interface NSStatusItem (Declared)
/// macOS 10.10: made with the item and owned by it.
@property(readonly) NSStatusBarButton* button;
/// macOS 10.12: whether the item is in the menu bar; the user can take it out. YES unless set.
@property(getter=isVisible) BOOL visible;
@end
