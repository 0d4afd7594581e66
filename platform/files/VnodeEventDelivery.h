#pragma once

#include "platform/files/VnodeSource.h"

#include <atomic>
#include <memory>

namespace orlimo {

/// Delivers the events of one source on its queue. Shared with the work pending there, which may
/// outlive the source.
class VnodeEventDelivery : public std::enable_shared_from_this<VnodeEventDelivery>
{
public:
    /// The queue must outlive its pending work.
    explicit VnodeEventDelivery(Queue& handlerQueue);

    /// Requests a run of the event handler; requests before it runs are merged. Any thread.
    void post(VnodeEvents events);

    /// Requests the cancel handler, after which both handlers are dropped. Any thread.
    void postCancellation();

    /// Prevents further runs of the event handler. Queue's thread, as is all that follows.
    void disable() { disabled = true; }

    /// Inside the event handler: the events that the run reports.
    [[nodiscard]] VnodeEvents data() const { return delivered; }

    VnodeSource::Handler eventHandler;
    VnodeSource::Handler cancelHandler;

private:
    void fire();
    void cancel();

    Queue& queue;
    std::atomic<VnodeEvents> pendingEvents = 0;
    VnodeEvents delivered = 0;
    bool disabled = false;
};

} // namespace orlimo
