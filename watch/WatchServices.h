#pragma once

#include "platform/files/FileHandle.h"
#include "platform/files/VnodeSource.h"
#include "platform/threads/Queue.h"
#include "platform/threads/UptimeClock.h"

namespace orlimo {

/// What a file monitor works on. Handed in whole, so that tests put a clock that they move by hand,
/// or a source that they script, in the place of the real one.
struct WatchServices
{
    Queue& mainQueue;
    Queue& decisionQueue;
    UptimeClock clock;
    VnodeSourceFactory makeVnodeSource;
    FileOpener openFile;
};

} // namespace orlimo
