#include "platform/loginitem/LaunchEvent.h"

namespace orlimo {

namespace {

std::optional<LaunchEvent>& eventBeingHandled()
{
    static std::optional<LaunchEvent> event;
    return event;
}

} // namespace

std::optional<LaunchEvent> currentLaunchEvent()
{
    return eventBeingHandled();
}

LaunchEventHandling::LaunchEventHandling(bool atLogin)
{
    eventBeingHandled() = LaunchEvent{
        .eventId = fourCharacterCode("oapp"),
        .propertyData = atLogin ? std::optional(fourCharacterCode("lgit")) : std::nullopt,
    };
}

LaunchEventHandling::~LaunchEventHandling()
{
    eventBeingHandled().reset();
}

} // namespace orlimo
