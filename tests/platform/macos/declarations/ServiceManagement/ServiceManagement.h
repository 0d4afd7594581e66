// What the program uses of ServiceManagement, which GNUstep lacks.
#pragma once

#import <Foundation/Foundation.h>

/// ServiceManagement
/// macOS 13.0
typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
};

/// ServiceManagement
/// macOS 13.0
@interface SMAppService : NSObject
/// macOS 13.0: the running program's own bundle as a login item.
@property(class, readonly) SMAppService* mainAppService;
/// macOS 13.0
@property(readonly) SMAppServiceStatus status;
/// macOS 13.0: NO with an error. No error where the user has to approve.
- (BOOL)registerAndReturnError:(NSError**)error;
/// macOS 13.0: NO with an error.
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end
