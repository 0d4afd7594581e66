#pragma once

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

/// Makes a pipe that no program which is started inherits, and returns the end to read from and the
/// end to write to, which the caller closes. Throws std::system_error where there can be none.
[[nodiscard]] inline std::array<int, 2> openPipe()
{
    std::array<int, 2> ends{};
    // In two steps: the call that does it in one is not on every system.
    if (::pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    for (const int end : ends) {
        (void)::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return ends;
}

} // namespace orlimo
