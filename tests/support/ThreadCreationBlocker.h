#pragma once

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
        // One whom no other test, running at the same time, is: the kernel counts threads by user.
        const uid_t user = 1'000'000'000 + static_cast<uid_t>(::getpid());
        possible = ::getrlimit(RLIMIT_NPROC, &former) == 0 && ::setuid(user) == 0;
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
