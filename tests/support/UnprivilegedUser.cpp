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

} // namespace orlimo
