#pragma once

#include <sys/types.h>
#include <unistd.h>

namespace orlimo {

/// A user whom no other test, running at the same time, is or disturbs: the kernel counts watchers
/// and threads by user. The superuser alone can become it.
[[nodiscard]] inline uid_t uniqueUser()
{
    constexpr uid_t firstOfMany = 1'000'000'000;
    return firstOfMany + static_cast<uid_t>(::getpid());
}

} // namespace orlimo
