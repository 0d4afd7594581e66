// What a view says of itself to aids to accessibility.
#pragma once

#import <AppKit/NSView.h>

/// AppKit
@interface NSView (Declared)
/// macOS 10.10
- (void)setAccessibilityLabel:(NSString*)accessibilityLabel;
@end
