#include "tests/platform/macos/standins/UserCacheFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include <unistd.h>

namespace orlimo {

std::optional<std::string>& userCacheFolder()
{
    static std::optional<std::string> folder;
    return folder;
}

} // namespace orlimo

// In the place of this system's own, which knows no such folder.
std::size_t confstr(int name, char* buffer, std::size_t size) noexcept
{
    const auto& folder = orlimo::userCacheFolder();
    if (name != _CS_DARWIN_USER_CACHE_DIR || !folder) {
        errno = EINVAL;
        return 0;
    }
    if (size > 0) {
        const std::size_t length = std::min(folder->size(), size - 1);
        std::copy_n(folder->begin(), length, buffer);
        buffer[length] = '\0';
    }
    return folder->size() + 1;
}
