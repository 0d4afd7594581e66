#include "platform/threads/UptimeClock.h"

namespace orlimo {

Uptime currentUptime()
{
    return std::chrono::steady_clock::now();
}

} // namespace orlimo
