#include "platform/loginitem/LaunchEvent.h"

#include "platform/threads/MainThread.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace orlimo {

std::optional<LaunchEvent> currentLaunchEvent()
{
    requireMainThread();
    @autoreleasepool {
        NSAppleEventDescriptor* const event =
            [[NSAppleEventManager sharedAppleEventManager] currentAppleEvent];
        if (event == nil) {
            return std::nullopt;
        }
        NSAppleEventDescriptor* const propertyData =
            [event paramDescriptorForKeyword:keyAEPropData];
        return LaunchEvent{
            .eventId = [event eventID],
            // Zero where the parameter is none of the enumerated kind.
            .propertyData = propertyData == nil
                                ? std::nullopt
                                : std::optional<FourCharacterCode>([propertyData enumCodeValue])};
    }
}

// The system keeps the launch event current by itself, and says in it whether the start belongs to
// a login. Of the argument that says so elsewhere it knows nothing.
LaunchEventHandling::LaunchEventHandling(bool /*atLogin*/) {}

LaunchEventHandling::~LaunchEventHandling() = default;

} // namespace orlimo
