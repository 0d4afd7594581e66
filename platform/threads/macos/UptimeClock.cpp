#include "platform/threads/UptimeClock.h"

#include <ctime>

namespace orlimo {

Uptime currentUptime()
{
    // The clock of dispatch_time(): it stops while the machine sleeps, which the standard library's
    // steady clock does not.
    return Uptime(std::chrono::nanoseconds(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)));
}

} // namespace orlimo
