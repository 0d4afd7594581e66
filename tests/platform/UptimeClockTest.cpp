#include "platform/UptimeClock.h"

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

TEST(UptimeClock, IsTheHostsSteadyClock)
{
    const auto before = std::chrono::steady_clock::now();
    const Uptime reading = currentUptime();
    const auto after = std::chrono::steady_clock::now();
    EXPECT_GE(reading, before);
    EXPECT_LE(reading, after);
}

} // namespace
} // namespace orlimo
