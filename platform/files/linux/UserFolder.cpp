#include "platform/files/linux/UserFolder.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

namespace orlimo {

int makeUserFolder(const std::filesystem::path& folder)
{
    std::error_code unknown;
    if (std::filesystem::is_directory(folder, unknown)) {
        return 0;
    }
    if (::mkdir(folder.c_str(), S_IRWXU) == 0) {
        return 0;
    }
    if (errno != ENOENT || !folder.has_relative_path()) {
        return errno;
    }
    const int error = makeUserFolder(folder.parent_path());
    return error == 0 && ::mkdir(folder.c_str(), S_IRWXU) != 0 ? errno : error;
}

} // namespace orlimo
