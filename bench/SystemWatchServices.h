#pragma once

#include "watch/WatchServices.h"

namespace orlimo {

/// The system's own services, of which a benchmark may replace some. Needs the application object.
[[nodiscard]] inline WatchServices systemWatchServices()
{
    return {
        mainQueue(),
        backgroundQueue(),
        currentUptime,
        makeFileSystemObjectSource,
        FileHandle::openForReading};
}

} // namespace orlimo
