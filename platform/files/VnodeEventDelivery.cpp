#include "platform/files/VnodeEventDelivery.h"

#include <utility>

namespace orlimo {

VnodeEventDelivery::VnodeEventDelivery(Queue& queueOfHandlers)
    : queue(queueOfHandlers)
{}

void VnodeEventDelivery::post(VnodeEvents events)
{
    if (waiting.fetch_or(events) == 0) {
        queue.async([self = shared_from_this()] { self->fire(); });
    }
}

void VnodeEventDelivery::postCancellation()
{
    queue.async([self = shared_from_this()] { self->cancel(); });
}

void VnodeEventDelivery::fire()
{
    const VnodeEvents events = waiting.exchange(0);
    if (dropped || !eventHandler) {
        return;
    }
    delivered = events;
    const auto running = eventHandler;
    running();
    delivered = 0;
}

void VnodeEventDelivery::cancel()
{
    const auto runLast = std::exchange(cancelHandler, {});
    const auto ended = std::exchange(eventHandler, {});
    if (runLast) {
        runLast();
    }
}

} // namespace orlimo
