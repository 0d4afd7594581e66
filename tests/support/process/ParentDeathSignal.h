#pragma once

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>

namespace orlimo {

/// Has this process, and the program that it becomes, killed when the process that started it ends,
/// however it ends: a test that is killed leaves nothing behind. Called in a child process.
inline void dieWithParent()
{
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) {
        std::abort();
    }
}

} // namespace orlimo
