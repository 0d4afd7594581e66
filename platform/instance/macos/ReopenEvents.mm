#include "platform/instance/macos/ReopenEvents.h"

#include "platform/threads/MainThread.h"

#include <utility>

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

/// What the system calls. Belongs to one ReopenEvents, which outlives its part in the system.
@interface OrlimoReopenHandler : NSObject {
    const std::function<void()>* reopen;
}
- (instancetype)initWithFunction:(const std::function<void()>*)function;
- (void)install;
- (void)uninstall;
- (void)applicationWillFinishLaunching:(NSNotification*)notification;
- (void)handleReopen:(NSAppleEventDescriptor*)event
      withReplyEvent:(NSAppleEventDescriptor*)replyEvent;
@end

@implementation OrlimoReopenHandler

- (instancetype)initWithFunction:(const std::function<void()>*)function
{
    self = [super init];
    if (self != nil) {
        reopen = function;
        // By then the application has its own handler in place, which ours replaces. The first
        // event is not delivered before.
        [[NSNotificationCenter defaultCenter]
            addObserver:self
               selector:@selector(applicationWillFinishLaunching:)
                   name:NSApplicationWillFinishLaunchingNotification
                 object:nil];
    }
    return self;
}

- (void)install
{
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                       andSelector:@selector(handleReopen:
                                                                           withReplyEvent:)
                                                     forEventClass:kCoreEventClass
                                                        andEventID:kAEReopenApplication];
}

- (void)uninstall
{
    [[NSNotificationCenter defaultCenter] removeObserver:self];
    [[NSAppleEventManager sharedAppleEventManager]
        removeEventHandlerForEventClass:kCoreEventClass
                             andEventID:kAEReopenApplication];
}

- (void)applicationWillFinishLaunching:(NSNotification*)notification
{
    static_cast<void>(notification);
    [self install];
}

- (void)handleReopen:(NSAppleEventDescriptor*)event
      withReplyEvent:(NSAppleEventDescriptor*)replyEvent
{
    static_cast<void>(event);
    static_cast<void>(replyEvent);
    (*reopen)();
}

@end

namespace orlimo {

ReopenEvents::ReopenEvents(std::function<void()> reopen)
    : onReopen(std::move(reopen))
    , handler(Retained<OrlimoReopenHandler*>::adopt(
          [[OrlimoReopenHandler alloc] initWithFunction:&onReopen]))
{
    requireMainThread();
}

ReopenEvents::~ReopenEvents()
{
    @autoreleasepool {
        [handler.get() uninstall];
    }
}

void ReopenEvents::install()
{
    requireMainThread();
    @autoreleasepool {
        [handler.get() install];
    }
}

} // namespace orlimo
