#include "platform/desktop/macos/NotificationObserver.h"

#include "platform/menubar/macos/ActionTarget.h"

#include <utility>

namespace orlimo {

NotificationObserver::NotificationObserver(
    NSString* name, std::function<void()> notificationHandler)
    : onNotification(std::move(notificationHandler))
    , target(
          Retained<NSObject*>::adopt([[OrlimoActionTarget alloc] initWithAction:&onNotification]))
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
