#include "platform/threads/UptimeClock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace orlimo {
namespace {

TEST(UptimeClock, ReadsTheSystemsSteadyClock)
{
    const auto before = std::chrono::steady_clock::now();
    const Uptime reading = currentUptime();
    const auto after = std::chrono::steady_clock::now();
    EXPECT_GE(reading, before);
    EXPECT_LE(reading, after);
}

} // namespace
} // namespace orlimo
