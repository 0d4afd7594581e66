// Opening applications, as the system does it today.
#pragma once

#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSWorkspace.h>

/// AppKit
/// macOS 10.15
@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying> {
    BOOL createsNewApplicationInstance;
    BOOL promptsUserIfNeeded;
}
/// macOS 10.15
+ (instancetype)configuration;
/// macOS 10.15: NO unless set.
@property BOOL createsNewApplicationInstance;
/// macOS 10.15: YES unless set.
@property BOOL promptsUserIfNeeded;
@end

/// AppKit
@interface NSWorkspace (DeclaredOpening)
/// macOS 10.15: the handler is called on a concurrent queue.
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication* app, NSError* error))completionHandler;
@end
