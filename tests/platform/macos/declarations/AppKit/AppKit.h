// AppKit as the system has it: what GNUstep's lacks is added to it.
#pragma once

#import <AppKit/NSEvent.h>
#import <AppKit/NSFont.h>
#import <AppKit/NSGraphicsContext.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSStatusBarButton.h>
#import <AppKit/NSStatusItem.h>
#import <AppKit/NSView.h>
#import <AppKit/NSWorkspace.h>

/// The masks of events by their names of today. macOS 10.12
enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1ULL << NSLeftMouseDown,
    NSEventMaskRightMouseDown = 1ULL << NSRightMouseDown,
};

/// The ways to draw by their names of today. macOS 10.12
constexpr NSCompositingOperation NSCompositingOperationSourceOver = NSCompositeSourceOver;

/// How large and how bold a symbol is. macOS 11.0
@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage (Declared)
/// macOS 10.5: whether only the image's shape counts. NO unless set.
- (void)setTemplate:(BOOL)isTemplate;
/// macOS 11.0: nil where the system has no symbol of that name.
+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description;
/// macOS 11.0: nil where the image is no symbol.
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end

@interface NSStatusItem (Declared)
/// macOS 10.10: made with the item and owned by it.
@property(readonly) NSStatusBarButton* button;
/// macOS 10.12: whether the item is in the menu bar; the user can take it out. YES unless set.
@property(getter=isVisible) BOOL visible;
@end

@interface NSView (Declared)
/// macOS 10.10: what aids to accessibility say.
- (void)setAccessibilityLabel:(NSString*)accessibilityLabel;
@end

/// How an application is opened. macOS 10.15
@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
/// NO unless set.
@property BOOL createsNewApplicationInstance;
/// YES unless set.
@property BOOL promptsUserIfNeeded;
@end

@interface NSWorkspace (Declared)
/// macOS 10.15: the handler is called on a concurrent queue.
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication* app, NSError* error))completionHandler;
@end

#include_next <AppKit/AppKit.h>
