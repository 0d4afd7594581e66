#pragma once

#include "platform/process/macos/Retained.h"

#include <functional>

#import <Foundation/Foundation.h>

@class OrlimoReopenHandler;

namespace orlimo {

/// The system's reopen events, sent to the running program when it is opened once more. From the
/// beginning of launching they arrive here instead of Qt's handler, which would treat them as an
/// activation. Main thread; may be constructed before the application object and the launch.
class ReopenEvents
{
public:
    /// Calls `reopen` for each event, while the event is handled.
    explicit ReopenEvents(std::function<void()> reopen);
    ReopenEvents(const ReopenEvents&) = delete;
    ReopenEvents& operator=(const ReopenEvents&) = delete;
    ~ReopenEvents();

    /// Installs the handler at once, for a program that has launched already.
    void install();

private:
    const std::function<void()> onReopen;
    const Retained<OrlimoReopenHandler*> handler;
};

} // namespace orlimo
