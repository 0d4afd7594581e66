#include "tests/platform/macos/standins/RunningApplicationsScript.h"

#include "platform/macos/Retained.h"
#include "platform/macos/StringConversion.h"

#include <memory>

#import <AppKit/AppKit.h>
#include <Block.h>

@interface OrlimoRunningApplication : NSRunningApplication {
@public
    pid_t heldProcess;
    BOOL heldTermination;
    NSURL* heldBundle;
}
@end

@implementation OrlimoRunningApplication

- (void)dealloc
{
    [heldBundle release];
    [super dealloc];
}

- (pid_t)processIdentifier
{
    return heldProcess;
}

- (BOOL)isTerminated
{
    return heldTermination;
}

- (NSURL*)bundleURL
{
    return heldBundle;
}

@end

namespace orlimo {

RunningApplicationsScript& runningApplicationsScript()
{
    static RunningApplicationsScript script;
    return script;
}

namespace {

using CompletionBlock = void (^)(NSRunningApplication*, NSError*);

OrlimoRunningApplication* runningApplication(pid_t process)
{
    OrlimoRunningApplication* const application = [[OrlimoRunningApplication alloc] init];
    application->heldProcess = process;
    return [application autorelease];
}

/// The block as a function, which owns a copy of it.
RunningApplicationsScript::Completion completion(CompletionBlock block)
{
    const std::shared_ptr<void> copy(
        reinterpret_cast<void*>(Block_copy(block)), [](void* owned) { Block_release(owned); });
    return [copy](std::optional<pid_t> opened) {
        @autoreleasepool {
            auto const handler = reinterpret_cast<CompletionBlock>(copy.get());
            if (opened) {
                handler(runningApplication(*opened), nil);
            } else {
                handler(nil, [NSError errorWithDomain:NSCocoaErrorDomain code:-600 userInfo:nil]);
            }
        }
    };
}

} // namespace
} // namespace orlimo

@implementation NSRunningApplication (Scripted)

+ (id)runningApplicationWithProcessIdentifier:(pid_t)process
{
    const auto& applicationIn = orlimo::runningApplicationsScript().applicationIn;
    const auto found = applicationIn ? applicationIn(process) : std::nullopt;
    if (!found) {
        return nil;
    }
    OrlimoRunningApplication* const application = orlimo::runningApplication(process);
    application->heldTermination = found->isTerminated ? YES : NO;
    if (found->bundlePath) {
        application->heldBundle =
            [[NSURL fileURLWithPath:orlimo::toNSString(*found->bundlePath)] retain];
    }
    return application;
}

@end

@implementation NSWorkspaceOpenConfiguration

@synthesize createsNewApplicationInstance;
@synthesize promptsUserIfNeeded;

+ (instancetype)configuration
{
    NSWorkspaceOpenConfiguration* const configuration = [[self alloc] init];
    [configuration setPromptsUserIfNeeded:YES];
    return [configuration autorelease];
}

- (id)copyWithZone:(NSZone*)zone
{
    NSWorkspaceOpenConfiguration* const copy = [[[self class] allocWithZone:zone] init];
    [copy setCreatesNewApplicationInstance:createsNewApplicationInstance];
    [copy setPromptsUserIfNeeded:promptsUserIfNeeded];
    return copy;
}

@end

@implementation NSWorkspace (Scripted)

+ (NSWorkspace*)sharedWorkspace
{
    // Not made as others are: that one would look for the session's services.
    static NSWorkspace* const workspace = NSAllocateObject([NSWorkspace class], 0, nullptr);
    return workspace;
}

- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))completionHandler
{
    const auto& open = orlimo::runningApplicationsScript().open;
    if (open) {
        open(
            {.bundlePath = orlimo::toUtf8([applicationURL path]),
             .createsNewInstance = [configuration createsNewApplicationInstance] != NO,
             .promptsUser = [configuration promptsUserIfNeeded] != NO},
            orlimo::completion(completionHandler));
    }
}

@end

@implementation NSBundle (Scripted)

- (NSString*)bundleIdentifier
{
    if (self != [NSBundle mainBundle]) {
        return [[self infoDictionary] objectForKey:@"CFBundleIdentifier"];
    }
    const auto& identifier = orlimo::runningApplicationsScript().ownBundleIdentifier;
    return identifier ? orlimo::toNSString(*identifier) : nil;
}

@end
