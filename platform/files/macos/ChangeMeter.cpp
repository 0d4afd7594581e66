#include "platform/files/macos/ChangeMeter.h"

#include <utility>

#include <sys/stat.h>

namespace orlimo {

ChangeMeter::ChangeMeter(int fileDescriptor)
    : descriptor(fileDescriptor)
{}

bool ChangeMeter::hasChanged()
{
    const auto now = present();
    return !now || std::exchange(last, now) != now;
}

std::optional<ChangeMeter::State> ChangeMeter::present() const
{
    struct stat status
    {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return State{status.st_size, status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec};
}

} // namespace orlimo
