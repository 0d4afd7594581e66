#include "tests/support/process/UnprivilegedUser.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <grp.h>
#include <unistd.h>

namespace orlimo {

constexpr unsigned nobody = 65534;

void becomeUnprivilegedUser()
{
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0))
    {
        std::abort();
    }
}

void handToUnprivilegedUser(const std::filesystem::path& folder)
{
    if (::geteuid() == 0 && ::chown(folder.c_str(), nobody, nobody) != 0) {
        throw std::system_error(errno, std::generic_category(), folder.string());
    }
}

} // namespace orlimo
