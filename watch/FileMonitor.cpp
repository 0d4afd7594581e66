#include "watch/FileMonitor.h"

#include "platform/process/LogLine.h"

#include <utility>

namespace orlimo {

namespace {

/// The shortest time between two calls of the delegate, in seconds.
constexpr double reportingInterval = 1.6;

FileHandle openLogged(const std::filesystem::path& file)
{
    // Said before the file is opened, so that it stands in the log also when that fails.
    writeLogLine("init file monitor");
    return FileHandle::openForReading(file);
}

} // namespace

std::shared_ptr<FileMonitor> FileMonitor::create(std::filesystem::path url, const WatchHost& host)
{
    std::shared_ptr<FileMonitor> monitor(new FileMonitor(std::move(url), host));
    monitor->start();
    return monitor;
}

FileMonitor::FileMonitor(std::filesystem::path watchedFile, const WatchHost& host)
    : throttle(Throttle::create(reportingInterval, host.decisionQueue, host.mainQueue, host.clock))
    , url(std::move(watchedFile))
    , fileHandle(openLogged(url))
    , source(host.makeVnodeSource(fileHandle.fileDescriptor(), vnodeExtend, host.mainQueue))
{}

FileMonitor::~FileMonitor()
{
    source->cancel();
}

void FileMonitor::setDelegate(std::weak_ptr<FileMonitorDelegate> whoIsTold)
{
    delegate = std::move(whoIsTold);
}

void FileMonitor::start()
{
    // Both handlers hold the monitor and the monitor holds the source: this circle is what keeps a
    // started monitor alive after its creator has let go of it.
    source->setEventHandler([self = shared_from_this()] { self->sourceDidFire(); });
    source->setCancelHandler([self = shared_from_this()] { (void)self->fileHandle.close(); });
    fileHandle.seekToEndOfFile();
    try {
        source->resume();
    } catch (...) {
        // Breaks the reference cycle: the source drops its handlers.
        source->cancel();
        throw;
    }
}

void FileMonitor::sourceDidFire()
{
    if ((source->data() & vnodeExtend) == 0) {
        return;
    }
    throttle->throttle([self = shared_from_this()] {
        if (const auto present = self->delegate.lock()) {
            present->fileDidChange();
        }
    });
}

} // namespace orlimo
