#include "watch/FileMonitor.h"

#include "platform/process/LogLine.h"

#include <utility>

namespace orlimo {

namespace {

/// The shortest time between two calls of the delegate, in seconds.
constexpr double reportingInterval = 1.6;

FileHandle openAndLog(const std::filesystem::path& file, const FileOpener& openFile)
{
    // Logged before the file is opened, so that the line appears even if that fails.
    writeLogLine("init file monitor");
    return openFile(file);
}

} // namespace

std::shared_ptr<FileMonitor>
FileMonitor::create(std::filesystem::path url, const WatchServices& services)
{
    std::shared_ptr<FileMonitor> monitor(new FileMonitor(std::move(url), services));
    monitor->start();
    return monitor;
}

FileMonitor::FileMonitor(std::filesystem::path watchedFile, const WatchServices& services)
    : throttle(Throttle::create(
          reportingInterval, services.decisionQueue, services.mainQueue, services.clock))
    , url(std::move(watchedFile))
    , fileHandle(openAndLog(url, services.openFile))
    , source(services.makeVnodeSource(fileHandle.fileDescriptor(), vnodeExtend, services.mainQueue))
{}

FileMonitor::~FileMonitor()
{
    source->cancel();
}

void FileMonitor::setDelegate(std::weak_ptr<FileMonitorDelegate> newDelegate)
{
    delegate = std::move(newDelegate);
}

void FileMonitor::start()
{
    // Both handlers hold the monitor and the monitor holds the source: this reference cycle keeps a
    // started monitor alive after its creator has released it.
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
        if (const auto strongDelegate = self->delegate.lock()) {
            strongDelegate->fileDidChange();
        }
    });
}

} // namespace orlimo
