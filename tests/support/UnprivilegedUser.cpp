#include "tests/support/UnprivilegedUser.h"

#include <cstdlib>

#include <grp.h>
#include <unistd.h>

namespace orlimo {

void becomeUnprivilegedUser()
{
    constexpr unsigned nobody = 65534;
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0))
    {
        std::abort();
    }
}

bool canOthersReach(const std::filesystem::path& file)
{
    for (auto folder = file.parent_path();; folder = folder.parent_path()) {
        const auto permissions = std::filesystem::status(folder).permissions();
        if ((permissions & std::filesystem::perms::others_exec) == std::filesystem::perms::none) {
            return false;
        }
        if (folder == folder.root_path()) {
            return true;
        }
    }
}

} // namespace orlimo
