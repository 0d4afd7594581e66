// The masks of events by their names of today.
#pragma once

#import <AppKit/NSEvent.h>

/// AppKit
enum : NSEventMask {
    /// macOS 10.12
    NSEventMaskLeftMouseDown = 1ULL << NSLeftMouseDown,
    /// macOS 10.12
    NSEventMaskRightMouseDown = 1ULL << NSRightMouseDown,
};
