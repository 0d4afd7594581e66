#pragma once

namespace orlimo {

/// Who is told that a watched file has grown. Held weakly by the monitor, so it is shared by
/// reference.
class FileMonitorDelegate
{
public:
    FileMonitorDelegate() = default;
    FileMonitorDelegate(const FileMonitorDelegate&) = delete;
    FileMonitorDelegate& operator=(const FileMonitorDelegate&) = delete;
    virtual ~FileMonitorDelegate() = default;

    /// The watched file has grown. Called on the main thread.
    virtual void fileDidChange() = 0;
};

} // namespace orlimo
