#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/watch/CountingDelegate.h"
#include "tests/watch/WatchBackend.h"
#include "watch/FileMonitor.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

TEST(FileMonitorConcurrency, ThousandsOfWritesOfManyThreadsAreOneCallAnInterval)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "store-log";
    writeFile(file, "a log");
    ManualClock clock;
    const auto backend = WatchBackend::named("Native");
    const auto delegate = std::make_shared<CountingDelegate>();
    FileMonitor::create(
        file,
        {mainQueue(),
         backgroundQueue(),
         clock.function(),
         backend->factory(),
         FileHandle::openForReading})
        ->setDelegate(delegate);

    constexpr int rounds = 10;
    constexpr int writers = 4;
    constexpr int writesEach = 250;
    for (int round = 1; round <= rounds; ++round) {
        // What is left of the round before may be this one's call as well.
        clock.advance(1600ms);
        std::vector<JoiningThread> threads;
        threads.reserve(writers);
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&file] {
                for (int write = 0; write < writesEach; ++write) {
                    appendToFile(file, "more");
                }
            });
        }
        EXPECT_TRUE(await([&] { return delegate->calls >= round; })) << "round " << round;
        threads.clear();
        runEventLoop(1ms);
        ASSERT_EQ(delegate->calls, round);
    }
    EXPECT_EQ(delegate->offMainThreadCalls, 0);
    backend->end();
}

} // namespace
} // namespace orlimo
