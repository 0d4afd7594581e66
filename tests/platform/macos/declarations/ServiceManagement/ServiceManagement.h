// What the program uses of ServiceManagement, which GNUstep lacks. macOS 13.0
#pragma once

#import <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
};

@interface SMAppService : NSObject
/// The running program's own bundle as a login item.
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
/// NO with an error. No error where the user has to approve.
- (BOOL)registerAndReturnError:(NSError**)error;
/// NO with an error.
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end
