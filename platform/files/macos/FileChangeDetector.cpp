#include "platform/files/macos/FileChangeDetector.h"

#include <utility>

#include <sys/stat.h>

namespace orlimo {

FileChangeDetector::FileChangeDetector(int fileDescriptor)
    : descriptor(fileDescriptor)
{}

bool FileChangeDetector::hasChanged()
{
    const auto now = currentState();
    return !now || std::exchange(last, now) != now;
}

std::optional<FileChangeDetector::State> FileChangeDetector::currentState() const
{
    struct stat status
    {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return State{status.st_size, status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec};
}

} // namespace orlimo
