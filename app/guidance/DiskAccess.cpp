#include "app/guidance/DiskAccess.h"

#include "platform/process/FatalStop.h"

#include <filesystem>
#include <string_view>

namespace orlimo {

namespace {

/// A folder of another program, which only full access to the disk can list.
constexpr std::string_view probeFolder = "~/Library/Containers/com.apple.stocks";

/// The path as a folder's address gives it: absolute, without a slash at its end.
std::string absolutePath(const std::string& folder)
{
    std::string path = std::filesystem::absolute(folder.empty() ? "." : folder).string();
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::string withTildesReplaced(std::string_view path, const std::string& home)
{
    std::string replaced;
    for (const char character : path) {
        if (character == '~') {
            replaced += home;
        } else {
            replaced += character;
        }
    }
    return replaced;
}

} // namespace

bool hasFullDiskAccess(
    const std::function<std::optional<UserEntry>()>& userEntry,
    const std::function<bool(const std::filesystem::path& folder)>& canListDirectory)
{
    std::string folder(probeFolder);
    if (const auto entry = userEntry()) {
        if (!entry->homeDirectory) {
            fatalStop("the user database knows no home folder for this user");
        }
        folder = withTildesReplaced(probeFolder, absolutePath(*entry->homeDirectory));
    }
    return canListDirectory(folder);
}

} // namespace orlimo
