#include "tests/support/process/PrivateFolder.h"

namespace orlimo {

std::filesystem::path makePrivateFolder(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    return folder;
}

} // namespace orlimo
