// Images that follow what they are shown on, and the system's symbols.
#pragma once

#import <AppKit/NSImage.h>

@class NSImageSymbolConfiguration;

/// AppKit
@interface NSImage (Declared)
/// macOS 10.5: whether only the image's shape counts. NO unless set.
- (BOOL)isTemplate;
/// macOS 10.5
- (void)setTemplate:(BOOL)isTemplate;
/// macOS 11.0: nil where the system has no symbol of that name.
+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description;
/// macOS 11.0: nil where the image is no symbol.
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end
