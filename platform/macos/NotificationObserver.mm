#include "platform/macos/NotificationObserver.h"

#include <utility>

namespace orlimo {

NotificationObserver::NotificationObserver(NSString* name, std::function<void()> whatToDo)
{
    @autoreleasepool {
        const auto work = std::move(whatToDo);
        observer = Retained<id>::retain([[NSNotificationCenter defaultCenter]
            addObserverForName:name
                        object:nil
                         queue:nil
                    usingBlock:^(NSNotification* /*notification*/) {
                        work();
                    }]);
    }
}

NotificationObserver::~NotificationObserver()
{
    @autoreleasepool {
        [[NSNotificationCenter defaultCenter] removeObserver:observer.get()];
    }
}

} // namespace orlimo
