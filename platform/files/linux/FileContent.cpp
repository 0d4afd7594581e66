#include "platform/files/linux/FileContent.h"

#include "platform/files/UniqueFd.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {

FileContent readRegularFile(const std::filesystem::path& file)
{
    const UniqueFd descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status
    {};
    if (!descriptor || ::fstat(descriptor.get(), &status) != 0) {
        return {.error = errno};
    }
    if (!S_ISREG(status.st_mode)) {
        return {.error = S_ISDIR(status.st_mode) ? EISDIR : EEXIST};
    }
    FileContent content;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t length = ::read(descriptor.get(), buffer.data(), buffer.size());
        if (length == 0) {
            return content;
        }
        if (length > 0) {
            content.text.append(buffer.data(), static_cast<std::size_t>(length));
        } else if (errno != EINTR) {
            return {.error = errno};
        }
    }
}

} // namespace orlimo
