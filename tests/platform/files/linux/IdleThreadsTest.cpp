#include "platform/threads/Queue.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <set>
#include <string>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// The threads of this process, by their id.
std::set<std::string> threads()
{
    std::set<std::string> ids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        ids.insert(entry.path().filename());
    }
    return ids;
}

TEST(IdleThreads, OfTheBackgroundQueueStay)
{
    const auto before = threads();
    std::atomic<int> ran = 0;
    for (int work = 0; work < 100; ++work) {
        backgroundQueue().async([&ran] { ++ran; });
    }
    ASSERT_TRUE(await([&ran] { return ran == 100; }));
    const auto after = threads();
    ASSERT_GT(after.size(), before.size());

    // Longer than the thirty seconds after which a pool's threads end by default.
    EXPECT_FALSE(await([&after] { return threads() != after; }, 33s));
}

} // namespace
} // namespace orlimo
