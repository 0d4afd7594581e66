#include "platform/files/FileHandle.h"

#include "platform/files/UniqueFd.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

namespace {

class OpenDescriptor final : public FileHandle::OpenFile
{
public:
    explicit OpenDescriptor(UniqueFd opened)
        : file(std::move(opened))
    {}

    [[nodiscard]] int descriptor() const override { return file.get(); }

    [[nodiscard]] std::uint64_t seekToEnd() const override
    {
        const off_t end = ::lseek(file.get(), 0, SEEK_END);
        return end < 0 ? 0 : static_cast<std::uint64_t>(end);
    }

    std::error_code close() override
    {
        return ::close(file.release()) == 0 ? std::error_code()
                                            : std::error_code(errno, std::generic_category());
    }

private:
    UniqueFd file;
};

} // namespace

FileHandle FileHandle::openForReading(const std::filesystem::path& file)
{
    // Non-blocking, so that a pipe under the file's name cannot stop the main thread.
    UniqueFd opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!opened) {
        throw std::system_error(errno, std::generic_category(), "cannot open " + file.string());
    }
    return FileHandle(std::make_unique<OpenDescriptor>(std::move(opened)));
}

} // namespace orlimo
