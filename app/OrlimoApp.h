#pragma once

#include "app/AppDelegate.h"
#include "capture/Message.h"

#include <memory>

namespace orlimo {

/// The application: its delegate and its one capture controller, which watches the store from the
/// moment the application is built. Main thread; needs the toolkit's application object.
class OrlimoApp
{
public:
    OrlimoApp();

    [[nodiscard]] AppDelegate& appDelegate() { return delegate; }
    [[nodiscard]] Message& message() { return *controller; }

private:
    AppDelegate delegate;
    std::shared_ptr<Message> controller;
};

} // namespace orlimo
