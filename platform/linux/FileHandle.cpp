#include "platform/FileHandle.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

FileHandle FileHandle::openForReading(const std::filesystem::path& file)
{
    // Not blocking, so that a pipe which someone put in the file's place cannot stop the main
    // thread.
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot open " + file.string());
    }
    return FileHandle(descriptor);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor(std::exchange(other.descriptor, -1))
{}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept
{
    std::swap(descriptor, other.descriptor);
    return *this;
}

FileHandle::~FileHandle()
{
    close();
}

std::uint64_t FileHandle::seekToEndOfFile() const
{
    const off_t end = ::lseek(descriptor, 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

std::error_code FileHandle::close()
{
    const int closing = std::exchange(descriptor, -1);
    if (closing >= 0 && ::close(closing) != 0) {
        return {errno, std::generic_category()};
    }
    return {};
}

} // namespace orlimo
