// AppKit as the system has it: what GNUstep's lacks is added to it.
#pragma once

#include_next <AppKit/AppKit.h>

// Constants by their names of today.
enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1ULL << NSLeftMouseDown,
    NSEventMaskRightMouseDown = 1ULL << NSRightMouseDown,
};
constexpr NSCompositingOperation NSCompositingOperationSourceOver = NSCompositeSourceOver;

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage (Declared)
- (void)setTemplate:(BOOL)isTemplate;
/// nil where the system has no symbol of that name.
+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end

@interface NSStatusItem (Declared)
/// Owned by the item.
@property(readonly) NSStatusBarButton* button;
@property(getter=isVisible) BOOL visible;
@end

@interface NSView (Declared)
- (void)setAccessibilityLabel:(NSString*)accessibilityLabel;
@end

@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
@property BOOL createsNewApplicationInstance;
@property BOOL promptsUserIfNeeded;
@end

@interface NSWorkspace (Declared)
/// The handler is called on a concurrent queue.
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication* app, NSError* error))completionHandler;
@end
