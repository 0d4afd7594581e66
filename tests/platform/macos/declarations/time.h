// What the system's C library adds to this header.
#pragma once

#include_next <time.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The system's C library, macOS 10.12: the clock of mach_absolute_time(), which stands still while
/// the machine sleeps.
#define CLOCK_UPTIME_RAW 8

/// The system's C library, macOS 10.12: the time in nanoseconds; 0 for a clock that there is not.
unsigned long long clock_gettime_nsec_np(clockid_t clock);

#ifdef __cplusplus
}
#endif
