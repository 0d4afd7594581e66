#pragma once

#import <Foundation/Foundation.h>

namespace orlimo {

/// Makes an event the one that is handled, as long as the object lives. Main thread; one at a time.
class CurrentAppleEvent
{
public:
    explicit CurrentAppleEvent(NSAppleEventDescriptor* event);
    CurrentAppleEvent(const CurrentAppleEvent&) = delete;
    CurrentAppleEvent& operator=(const CurrentAppleEvent&) = delete;
    ~CurrentAppleEvent();
};

/// An event without parameters.
[[nodiscard]] NSAppleEventDescriptor* appleEvent(AEEventClass eventClass, AEEventID eventId);

/// Has the handler that is set for the event handle it. False when there is none. Main thread.
[[nodiscard]] bool deliverAppleEvent(AEEventClass eventClass, AEEventID eventId);

} // namespace orlimo
