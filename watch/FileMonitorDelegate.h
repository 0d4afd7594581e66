#pragma once

namespace orlimo {

/// Notified of the growth of a watched file. Held weakly by the monitor, and so owned through a
/// shared pointer by its creator.
class FileMonitorDelegate
{
public:
    FileMonitorDelegate() = default;
    FileMonitorDelegate(const FileMonitorDelegate&) = delete;
    FileMonitorDelegate& operator=(const FileMonitorDelegate&) = delete;
    virtual ~FileMonitorDelegate() = default;

    /// Called on the main thread after the watched file has grown.
    virtual void fileDidChange() = 0;
};

} // namespace orlimo
