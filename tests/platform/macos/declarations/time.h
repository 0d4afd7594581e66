#pragma once

#include_next <time.h>

/// The clock of mach_absolute_time(), which stands still while the machine sleeps.
#define CLOCK_UPTIME_RAW 8

/// The time in nanoseconds; 0 for a clock that there is not.
extern "C" unsigned long long clock_gettime_nsec_np(clockid_t clock);
