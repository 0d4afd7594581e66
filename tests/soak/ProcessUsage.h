#pragma once

#include <sys/types.h>

namespace orlimo {

/// What a process takes at one moment, as the kernel counts it.
struct ProcessUsage
{
    long descriptors = 0;
    long threads = 0;
    /// Memory in its place, in KiB: everything, and of it what no file stands behind.
    long resident = 0;
    long anonymous = 0;

    /// Of the running process `process`. What cannot be read is a test failure.
    [[nodiscard]] static ProcessUsage of(pid_t process);
};

} // namespace orlimo
