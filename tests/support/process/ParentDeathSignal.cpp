#include "tests/support/process/ParentDeathSignal.h"

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>

namespace orlimo {

void dieWithParent()
{
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) {
        std::abort();
    }
}

} // namespace orlimo
