#include "tests/support/process/PermissionEnforcement.h"

#include <cstdlib>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace orlimo {

void enforceFilePermissions()
{
    if (::geteuid() == 0 && (::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) != 0 ||
                             ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0) != 0))
    {
        std::abort();
    }
}

} // namespace orlimo
