#pragma once

#include "platform/process/macos/Retained.h"

#include <functional>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Calls a function each time a notification is posted within the program, synchronously and on the
/// posting thread, for the lifetime of the object.
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
