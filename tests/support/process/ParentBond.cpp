#include "tests/support/process/ParentBond.h"

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>

namespace orlimo {

void endWithParent()
{
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) {
        std::abort();
    }
}

} // namespace orlimo
