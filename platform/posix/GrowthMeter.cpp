#include "platform/posix/GrowthMeter.h"

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace orlimo {

namespace {

std::optional<std::int64_t> sizeOf(int descriptor)
{
    struct stat status
    {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return status.st_size;
}

} // namespace

GrowthMeter::GrowthMeter(int fileDescriptor)
    : descriptor(fileDescriptor)
{
    const auto present = sizeOf(descriptor);
    if (!present) {
        throw std::system_error(errno, std::generic_category(), "cannot ask a file's size");
    }
    size = *present;
}

bool GrowthMeter::hasGrown()
{
    const auto present = sizeOf(descriptor);
    // Better a look too many than a message that nobody hears of.
    return !present || std::exchange(size, *present) < *present;
}

} // namespace orlimo
