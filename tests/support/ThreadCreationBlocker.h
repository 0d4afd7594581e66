#pragma once

#include "tests/support/process/UniqueUser.h"

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

/// While it lives no thread can be started in this process, which becomes another user for it and
/// stays that one. The superuser alone can do so.
class ThreadCreationBlocker
{
public:
    ThreadCreationBlocker()
    {
        possible = ::getrlimit(RLIMIT_NPROC, &former) == 0 && ::setuid(uniqueUser()) == 0;
        const rlimit none{0, former.rlim_max};
        possible = possible && ::setrlimit(RLIMIT_NPROC, &none) == 0;
    }
    ThreadCreationBlocker(const ThreadCreationBlocker&) = delete;
    ThreadCreationBlocker& operator=(const ThreadCreationBlocker&) = delete;
    ~ThreadCreationBlocker() { (void)::setrlimit(RLIMIT_NPROC, &former); }

    [[nodiscard]] bool isPossible() const { return possible; }

private:
    rlimit former{};
    bool possible = false;
};

} // namespace orlimo
