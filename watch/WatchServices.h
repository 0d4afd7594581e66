#pragma once

#include "platform/files/VnodeSource.h"
#include "platform/threads/Queue.h"
#include "platform/threads/UptimeClock.h"

namespace orlimo {

/// What a file monitor asks of its host. Handed in whole, so that tests put a clock that they move
/// by hand, or a source that they script, in the place of the real one.
struct WatchServices
{
    Queue& mainQueue;
    Queue& decisionQueue;
    UptimeClock clock;
    VnodeSourceFactory makeVnodeSource;

    /// The running program's own: the event loop, the background queue, the uptime clock, the
    /// host's file watch. Needs the application object.
    [[nodiscard]] static WatchServices native()
    {
        return {orlimo::mainQueue(), backgroundQueue(), currentUptime, makeFileSystemObjectSource};
    }
};

} // namespace orlimo
