#pragma once

#include "platform/files/VnodeSource.h"
#include "platform/threads/UptimeClock.h"

#include <memory>

namespace orlimo {

/// makeFileSystemObjectSource() with the clock that times the wait for a writer.
[[nodiscard]] std::unique_ptr<VnodeSource> makeDispatchVnodeSource(
    int fileDescriptor, VnodeEvents mask, Queue& queue, const UptimeClock& clock);

} // namespace orlimo
