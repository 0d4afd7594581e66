#pragma once

#include "platform/files/VnodeSource.h"

#include <memory>
#include <string>

namespace orlimo {

/// What reports the changes of a file to the file monitor in one run of the cases.
class WatchBackend
{
public:
    /// The host's own source, or one that is told by the test, for the names "Native" and
    /// "Scripted".
    [[nodiscard]] static std::unique_ptr<WatchBackend> named(const std::string& name);

    WatchBackend() = default;
    WatchBackend(const WatchBackend&) = delete;
    WatchBackend& operator=(const WatchBackend&) = delete;
    virtual ~WatchBackend() = default;

    [[nodiscard]] virtual VnodeSourceFactory factory() = 0;

    /// Says what the test has just done to the file, as bits of the vnode filter, for a source that
    /// cannot see it.
    virtual void notifyChange(VnodeEvents events) = 0;

    /// Lets go of everyone whom the sources keep alive.
    virtual void end() = 0;
};

} // namespace orlimo
