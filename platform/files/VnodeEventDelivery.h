#pragma once

#include "platform/files/VnodeSource.h"

#include <atomic>
#include <memory>

namespace orlimo {

/// Hands the events of one source over to its queue. Shared with the work that waits there, which
/// may outlive the source.
class VnodeEventDelivery : public std::enable_shared_from_this<VnodeEventDelivery>
{
public:
    /// The queue must last until the work that waits there has run.
    explicit VnodeEventDelivery(Queue& handlerQueue);

    /// Asks for one run of the event handler; what is asked before it runs is the same run. Any
    /// thread.
    void post(VnodeEvents events);

    /// Asks for the cancel handler, after which both handlers are dropped. Any thread.
    void postCancellation();

    /// Starts no event handler any more. Queue's thread, as is all that follows.
    void disable() { disabled = true; }

    /// Inside the event handler: what the run stands for.
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
