#pragma once

#include "tests/support/process/UserOfOwn.h"

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

/// While it lives no thread can be started in this process, which becomes another user for it and
/// stays that one. The superuser alone can do so.
class NoThreads
{
public:
    NoThreads()
    {
        possible = ::getrlimit(RLIMIT_NPROC, &former) == 0 && ::setuid(userOfOwn()) == 0;
        const rlimit none{0, former.rlim_max};
        possible = possible && ::setrlimit(RLIMIT_NPROC, &none) == 0;
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
    ~NoThreads() { (void)::setrlimit(RLIMIT_NPROC, &former); }

    [[nodiscard]] bool isPossible() const { return possible; }

private:
    rlimit former{};
    bool possible = false;
};

} // namespace orlimo
