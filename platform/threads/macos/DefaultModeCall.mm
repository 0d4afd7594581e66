#include "platform/threads/macos/DefaultModeCall.h"

#include "platform/menubar/macos/ActionTarget.h"

#include <utility>

namespace orlimo {

DefaultModeCall::DefaultModeCall(std::function<void()> function)
    : called(std::move(function))
    , target(Retained<NSObject*>::adopt([[OrlimoActionTarget alloc] initWithAction:&called]))
{}

DefaultModeCall::~DefaultModeCall()
{
    @autoreleasepool {
        cancel();
    }
}

void DefaultModeCall::schedule()
{
    @autoreleasepool {
        cancel();
        [target.get() performSelector:@selector(performAction:)
                           withObject:nil
                           afterDelay:0
                              inModes:[NSArray arrayWithObject:NSDefaultRunLoopMode]];
    }
}

void DefaultModeCall::cancel()
{
    [NSObject cancelPreviousPerformRequestsWithTarget:target.get()];
}

} // namespace orlimo
