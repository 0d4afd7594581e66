#pragma once

#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {

/// While it lives no thread can be started in this process, which is another user's meanwhile. The
/// superuser alone can do so.
class ThreadCreationBlocker
{
public:
    ThreadCreationBlocker()
    {
        // One whom no other test, running at the same time, is: the kernel counts threads by user.
        const uid_t user = 1'000'000'000 + static_cast<uid_t>(::getpid());
        possible = ::getrlimit(RLIMIT_NPROC, &former) == 0 && ::geteuid() == 0 &&
                   ::setreuid(user, 0) == 0 && ::seteuid(user) == 0;
        const rlimit none{0, former.rlim_max};
        possible = possible && ::setrlimit(RLIMIT_NPROC, &none) == 0;
    }
    ThreadCreationBlocker(const ThreadCreationBlocker&) = delete;
    ThreadCreationBlocker& operator=(const ThreadCreationBlocker&) = delete;
    ~ThreadCreationBlocker()
    {
        (void)::setrlimit(RLIMIT_NPROC, &former);
        if (possible) {
            (void)!::seteuid(0);
            (void)!::setreuid(0, 0);
        }
    }

    [[nodiscard]] bool isPossible() const { return possible; }

private:
    rlimit former{};
    bool possible = false;
};

} // namespace orlimo
