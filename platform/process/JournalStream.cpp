#include "platform/process/JournalStream.h"

#include <charconv>
#include <system_error>

#include <sys/stat.h>

namespace orlimo {

std::optional<JournalStream> JournalStream::parse(std::string_view value)
{
    JournalStream stream;
    const char* const end = value.data() + value.size();
    const auto device = std::from_chars(value.data(), end, stream.device);
    if (device.ec != std::errc() || device.ptr == end || *device.ptr != ':') {
        return std::nullopt;
    }
    const auto inode = std::from_chars(device.ptr + 1, end, stream.inode);
    if (inode.ec != std::errc() || inode.ptr != end) {
        return std::nullopt;
    }
    return stream;
}

bool JournalStream::matches(int descriptor) const
{
    struct stat found
    {};
    return ::fstat(descriptor, &found) == 0 && static_cast<std::uint64_t>(found.st_dev) == device &&
           static_cast<std::uint64_t>(found.st_ino) == inode;
}

} // namespace orlimo
