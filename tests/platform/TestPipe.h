#pragma once

#include "platform/posix/UniqueFd.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

/// A pipe, both ends of which wait.
struct TestPipe
{
    TestPipe()
    {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        readEnd = UniqueFd(ends[0]);
        writeEnd = UniqueFd(ends[1]);
    }

    UniqueFd readEnd;
    UniqueFd writeEnd;
};

} // namespace orlimo
