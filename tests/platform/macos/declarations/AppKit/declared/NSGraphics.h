// The ways to draw by their names of today.
#pragma once

#import <AppKit/NSGraphicsContext.h>

/// AppKit
/// macOS 10.12
constexpr NSCompositingOperation NSCompositingOperationSourceOver = NSCompositeSourceOver;
