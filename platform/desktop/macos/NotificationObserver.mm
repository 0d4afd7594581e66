#include "platform/desktop/macos/NotificationObserver.h"

#include "platform/menubar/macos/ActionTarget.h"

#include <utility>

namespace orlimo {

NotificationObserver::NotificationObserver(NSString* name, std::function<void()> whatToDo)
    : work(std::move(whatToDo))
    , target(Retained<NSObject*>::adopt([[OrlimoActionTarget alloc] initWithAction:&work]))
{
    @autoreleasepool {
        [[NSNotificationCenter defaultCenter] addObserver:target.get()
                                                 selector:@selector(performAction:)
                                                     name:name
                                                   object:nil];
    }
}

NotificationObserver::~NotificationObserver()
{
    @autoreleasepool {
        [[NSNotificationCenter defaultCenter] removeObserver:target.get()];
    }
}

} // namespace orlimo
