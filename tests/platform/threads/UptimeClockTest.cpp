#include "platform/threads/UptimeClock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace orlimo {
namespace {

TEST(UptimeClock, NeverRunsBackwards)
{
    Uptime last = currentUptime();
    for (int reading = 0; reading < 10000; ++reading) {
        const Uptime now = currentUptime();
        ASSERT_GE(now, last);
        last = now;
    }
}

} // namespace
} // namespace orlimo
