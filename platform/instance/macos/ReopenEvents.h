#pragma once

#include "platform/process/macos/Retained.h"

#include <functional>

#import <Foundation/Foundation.h>

@class OrlimoReopenHandler;

namespace orlimo {

/// The events by which the system asks a program that runs already to show itself, as when it is
/// opened once more. From the start of launching on they come here and no longer to the toolkit's
/// handler, which would take them for an activation. Main thread; may be made before the
/// application object, and before the launch.
class ReopenEvents
{
public:
    /// Has `reopen` called at each event, while the event is handled.
    explicit ReopenEvents(std::function<void()> reopen);
    ReopenEvents(const ReopenEvents&) = delete;
    ReopenEvents& operator=(const ReopenEvents&) = delete;
    ~ReopenEvents();

    /// Takes the events over at once, for a program that has launched already.
    void install();

private:
    const std::function<void()> onReopen;
    const Retained<OrlimoReopenHandler*> handler;
};

} // namespace orlimo
