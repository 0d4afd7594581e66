#include "platform/files/linux/UserFolders.h"

#include "platform/files/LibraryFolder.h"
#include "platform/process/EnvironmentVariable.h"
#include "platform/process/UserDatabase.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

namespace orlimo {

std::optional<std::filesystem::path> homeFolder()
{
    std::string home = environmentVariable("HOME");
    if (home.empty()) {
        const auto user = currentUserEntry();
        home = user ? user->homeDirectory.value_or("") : "";
    }
    return home.empty() ? std::nullopt : std::optional<std::filesystem::path>(home);
}

std::optional<std::filesystem::path> libraryFolder()
{
    const auto home = homeFolder();
    return home ? std::optional(*home / "Library") : std::nullopt;
}

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
