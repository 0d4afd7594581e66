#pragma once

#include "platform/files/FileHandle.h"
#include "platform/files/VnodeSource.h"
#include "watch/FileMonitorDelegate.h"
#include "watch/Throttle.h"
#include "watch/WatchServices.h"

#include <filesystem>
#include <memory>

namespace orlimo {

/// Tells its delegate that one file has grown, at most once in 1.6 seconds. Reads nothing from the
/// file and never reopens it: one that is deleted or replaced is simply not heard of again.
///
/// A monitor keeps itself alive, through the handlers of its source, and watches until the process
/// ends; it cannot be stopped. Main thread.
class FileMonitor : public std::enable_shared_from_this<FileMonitor>
{
public:
    /// Starts to watch `url`. Throws std::system_error with the host's error when the file cannot
    /// be opened or watched. Growth in the first 1.6 seconds is not reported.
    static std::shared_ptr<FileMonitor>
    create(std::filesystem::path url, const WatchServices& services);

    ~FileMonitor();
    FileMonitor(const FileMonitor&) = delete;
    FileMonitor& operator=(const FileMonitor&) = delete;

    /// Who is told from now on. Not kept alive: a delegate that has gone away is not told.
    void setDelegate(std::weak_ptr<FileMonitorDelegate> newDelegate);

private:
    FileMonitor(std::filesystem::path watchedFile, const WatchServices& services);

    void start();
    void sourceDidFire();

    // In the order of construction: the throttle's clock starts before the file is opened.
    std::shared_ptr<Throttle> throttle;
    std::weak_ptr<FileMonitorDelegate> delegate;
    std::filesystem::path url;
    FileHandle fileHandle;
    std::unique_ptr<VnodeSource> source;
};

} // namespace orlimo
