// How large and how bold a symbol is.
#pragma once

#import <AppKit/NSFont.h>

/// AppKit
/// macOS 11.0
@interface NSImageSymbolConfiguration : NSObject {
    CGFloat _pointSize;
    NSFontWeight _weight;
}
/// macOS 11.0: as large and as bold as text of that size and weight.
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end
