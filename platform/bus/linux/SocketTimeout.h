#pragma once

#include "platform/threads/UptimeClock.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>

#include <sys/socket.h>
#include <sys/time.h>

namespace orlimo {

/// Makes blocking calls on `socket` fail with EAGAIN at the deadline, in the given `directions`:
/// SO_SNDTIMEO, which also covers connect(), and SO_RCVTIMEO. Any thread.
inline void setSocketTimeout(int socket, Uptime deadline, std::initializer_list<int> directions)
{
    using std::chrono::microseconds;
    // Zero would mean no limit.
    const auto remaining =
        std::max(microseconds(1), std::chrono::ceil<microseconds>(deadline - currentUptime()));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(remaining);
    timeval limit{};
    limit.tv_sec = seconds.count();
    limit.tv_usec = (remaining - seconds).count();
    for (const int direction : directions) {
        (void)::setsockopt(socket, SOL_SOCKET, direction, &limit, sizeof limit);
    }
}

} // namespace orlimo
