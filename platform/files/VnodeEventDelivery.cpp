#include "platform/files/VnodeEventDelivery.h"

#include <utility>

namespace orlimo {

VnodeEventDelivery::VnodeEventDelivery(Queue& handlerQueue)
    : queue(handlerQueue)
{}

void VnodeEventDelivery::post(VnodeEvents events)
{
    if (pendingEvents.fetch_or(events) == 0) {
        queue.async([self = shared_from_this()] { self->fire(); });
    }
}

void VnodeEventDelivery::postCancellation()
{
    queue.async([self = shared_from_this()] { self->cancel(); });
}

void VnodeEventDelivery::fire()
{
    const VnodeEvents events = pendingEvents.exchange(0);
    if (disabled || !eventHandler) {
        return;
    }
    delivered = events;
    const auto callback = eventHandler;
    callback();
    delivered = 0;
}

void VnodeEventDelivery::cancel()
{
    const auto finalHandler = std::exchange(cancelHandler, {});
    const auto releasedHandler = std::exchange(eventHandler, {});
    if (finalHandler) {
        finalHandler();
    }
}

} // namespace orlimo
