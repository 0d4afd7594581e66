// The application object: what kind of program this one is.
#pragma once

#import <AppKit/NSApplication.h>
#import <AppKit/NSRunningApplication.h>

/// AppKit
@interface NSApplication (Declared)
/// macOS 10.6: NO where the policy cannot be taken.
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
@end
