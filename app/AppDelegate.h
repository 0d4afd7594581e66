#pragma once

#include "capture/Message.h"

#include <memory>

namespace orlimo {

/// What the application does at the turns of its life. Main thread.
class AppDelegate
{
public:
    /// The application's capture controller, handed over before the first turn.
    std::shared_ptr<Message> message;

    /// Before the event loop starts: stores the preference defaults where they are absent.
    void applicationWillFinishLaunching();
};

} // namespace orlimo
