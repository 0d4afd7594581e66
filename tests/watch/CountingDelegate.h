#pragma once

#include "platform/threads/MainThread.h"
#include "watch/FileMonitorDelegate.h"

namespace orlimo {

/// Counts how often it is told that the file has grown.
class CountingDelegate final : public FileMonitorDelegate
{
public:
    void fileDidChange() override
    {
        ++calls;
        offMainThreadCalls += isMainThread() ? 0 : 1;
    }

    int calls = 0;
    int offMainThreadCalls = 0; ///< calls outside the main thread
};

} // namespace orlimo
