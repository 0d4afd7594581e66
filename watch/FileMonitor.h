#pragma once

#include "platform/files/FileHandle.h"
#include "platform/files/VnodeSource.h"
#include "watch/FileMonitorDelegate.h"
#include "watch/Throttle.h"
#include "watch/WatchServices.h"

#include <filesystem>
#include <memory>

namespace orlimo {

/// Notifies its delegate that one file has grown, at most once in 1.6 seconds. Reads nothing from
/// the file and never reopens it: if it is deleted or replaced, no further events are delivered for
/// it.
///
/// A monitor keeps itself alive through the handlers of its source and watches until the process
/// ends; it cannot be stopped. Main thread.
class FileMonitor : public std::enable_shared_from_this<FileMonitor>
{
public:
    /// Starts watching `url`. Throws std::system_error with the system's error if the file cannot
    /// be opened or watched. Growth in the first 1.6 seconds is not reported.
    static std::shared_ptr<FileMonitor>
    create(std::filesystem::path url, const WatchServices& services);

    ~FileMonitor();
    FileMonitor(const FileMonitor&) = delete;
    FileMonitor& operator=(const FileMonitor&) = delete;

    /// Sets who is notified from now on. Held weakly: a delegate that was destroyed is skipped.
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
