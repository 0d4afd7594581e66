// What the system's C library adds to this header. macOS 10.12
#pragma once

#include_next <time.h>

/// The clock of mach_absolute_time(), which stands still while the machine sleeps.
#define CLOCK_UPTIME_RAW 8

#ifdef __cplusplus
extern "C"
#endif
    /// The time in nanoseconds; 0 for a clock that there is not.
    unsigned long long
    clock_gettime_nsec_np(clockid_t clock);
