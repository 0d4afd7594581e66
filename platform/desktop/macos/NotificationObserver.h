#pragma once

#include "platform/process/macos/Retained.h"

#include <functional>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Calls a function each time a notification of the program's own is posted, within the posting and
/// on its thread, until the object goes.
class NotificationObserver
{
public:
    NotificationObserver(NSString* name, std::function<void()> notificationHandler);
    NotificationObserver(const NotificationObserver&) = delete;
    NotificationObserver& operator=(const NotificationObserver&) = delete;
    ~NotificationObserver();

private:
    std::function<void()> onNotification;
    Retained<NSObject*> target;
};

} // namespace orlimo
