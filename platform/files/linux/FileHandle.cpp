#include "platform/files/FileHandle.h"

#include "platform/files/UniqueFd.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

class FileHandle::OpenFile
{
public:
    explicit OpenFile(UniqueFd opened)
        : descriptor(std::move(opened))
    {}

    UniqueFd descriptor;
};

FileHandle FileHandle::openForReading(const std::filesystem::path& file)
{
    // Non-blocking, so that a pipe under the file's name cannot stop the main thread.
    UniqueFd opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!opened) {
        throw std::system_error(errno, std::generic_category(), "cannot open " + file.string());
    }
    return FileHandle(std::make_unique<OpenFile>(std::move(opened)));
}

FileHandle::FileHandle(std::unique_ptr<OpenFile> opened)
    : openFile(std::move(opened))
{}

FileHandle::FileHandle(FileHandle&& other) noexcept = default;
FileHandle& FileHandle::operator=(FileHandle&& other) noexcept = default;
FileHandle::~FileHandle() = default;

int FileHandle::fileDescriptor() const
{
    return openFile ? openFile->descriptor.get() : -1;
}

std::uint64_t FileHandle::seekToEndOfFile() const
{
    const off_t end = ::lseek(fileDescriptor(), 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

std::error_code FileHandle::close()
{
    if (!openFile) {
        return {};
    }
    const int closing = openFile->descriptor.release();
    openFile.reset();
    return ::close(closing) == 0 ? std::error_code()
                                 : std::error_code(errno, std::generic_category());
}

} // namespace orlimo
