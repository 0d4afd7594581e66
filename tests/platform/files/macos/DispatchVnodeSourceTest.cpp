#include "platform/files/macos/DispatchVnodeSource.h"

#include "platform/files/UniqueFd.h"
#include "tests/platform/files/ForeignLock.h"
#include "tests/platform/macos/fakes/ScriptedDispatch.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

constexpr VnodeEvents vnodeWrite = 0x2;

/// A source on the main dispatch queue for a store's log. The test scripts queue, clock and events;
/// the file, its shared index and the write lock are real.
class DispatchVnodeSourceTest : public testing::Test
{
protected:
    DispatchVnodeSourceTest()
    {
        script.reset();
        writeFile(log, "0123456789");
        writeFile(index, "an index");
        opened = UniqueFd(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
    }

    void watch(VnodeEvents mask = vnodeExtend)
    {
        source = makeDispatchVnodeSource(opened.get(), mask, mainQueue(), clock);
        source->setEventHandler([this] { seen.push_back(source->data()); });
        source->setCancelHandler([this] { ++cancellations; });
        source->resume();
    }

    /// Lengthens the file and has the system report it.
    void grow()
    {
        appendToFile(log, "more");
        script.fire(vnodeExtend);
    }

    void pass(std::chrono::nanoseconds span)
    {
        script.advance(span);
        script.run();
    }

    /// The writer appends a commit's frames and keeps the lock.
    void holdAndGrow()
    {
        lock.emplace(index, 120);
        grow();
        script.run();
    }

    /// How long until the next check is due.
    [[nodiscard]] std::optional<std::chrono::nanoseconds> delay() const
    {
        const auto* const timer = script.timer();
        return timer != nullptr && timer->due ? std::optional(*timer->due - script.now)
                                              : std::nullopt;
    }

    ScriptedDispatch& script = ScriptedDispatch::shared();
    UptimeClock clock = [this] { return script.now; };
    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    UniqueFd opened;
    std::optional<ForeignLock> lock;
    std::vector<VnodeEvents> seen;
    int cancellations = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(DispatchVnodeSourceTest, RequestedEventsAreReportedOnTheMainQueue)
{
    watch(vnodeWrite | vnodeExtend);
    ASSERT_EQ(script.sources.size(), 1U);
    EXPECT_EQ(script.sources[0].handle, static_cast<std::uintptr_t>(opened.get()));
    EXPECT_EQ(script.sources[0].mask, 0x6U);
    EXPECT_EQ(script.sources[0].queue, "main");
    for (std::size_t time = 1; time <= 2; ++time) {
        grow();
        EXPECT_EQ(seen.size(), time - 1);
        script.run();
        EXPECT_EQ(seen, std::vector(time, vnodeExtend));
        EXPECT_EQ(source->data(), 0U) << "outside of the handler";
    }
    script.fire(vnodeExtend); // of what was delivered already
    script.run();
    EXPECT_EQ(seen.size(), 2U);
    lock.emplace(index, 120);
    script.fire(vnodeWrite);
    script.run();
    EXPECT_EQ(seen.back(), vnodeWrite);
    EXPECT_EQ(script.timer(), nullptr) << "nothing waits";
}

TEST_F(DispatchVnodeSourceTest, ClosedFileOrEmptyMaskThrows)
{
    for (const int number : {EBADF, EINVAL}) {
        const int descriptor = number == EBADF ? -1 : opened.get();
        const VnodeEvents mask = number == EBADF ? vnodeExtend : 0;
        try {
            (void)makeDispatchVnodeSource(descriptor, mask, mainQueue(), clock);
            FAIL() << number;
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::error_code(number, std::generic_category()));
        }
    }
}

// While another process holds the write lock

TEST_F(DispatchVnodeSourceTest, WaitUsesOneStrictTimer)
{
    watch();
    holdAndGrow();
    EXPECT_EQ(delay(), 100us);
    pass(60us);
    grow();
    script.run();
    EXPECT_EQ(delay(), 40us) << "growth does not postpone the check";
    pass(40us);
    pass(7900us);
    EXPECT_EQ(delay(), 1ms);
    ASSERT_EQ(script.sources.size(), 2U);
    EXPECT_EQ(script.timer()->mask, 1U) << "the system does not postpone it";
    EXPECT_EQ(script.timer()->leeway, 0ns);
    EXPECT_TRUE(script.timer()->active);
    EXPECT_EQ(script.timer()->queue, "main");
    source->cancel();
    script.run();
    EXPECT_EQ(script.timer(), nullptr);
}

TEST_F(DispatchVnodeSourceTest, GrowthWhileTheLockIsHeldIsOneEventAfterIt)
{
    watch();
    for (const std::size_t commit : {1U, 2U, 3U}) {
        for (int frame = 0; frame < 3; ++frame) {
            holdAndGrow();
            EXPECT_TRUE(delay());
            pass(1ms);
        }
        EXPECT_EQ(seen.size(), commit - 1);
        lock.reset();
        if (commit == 1) {
            grow();
        } else if (commit == 2) {
            script.fire(vnodeExtend); // a late report of what was seen already
        }
        pass(commit == 3 ? 1h : 0h);
        EXPECT_EQ(seen.size(), commit);
        script.fire(vnodeExtend);
        pass(1h);
        EXPECT_EQ(seen.size(), commit) << "nothing is reported twice";
        EXPECT_FALSE(delay());
    }
}

// Cancelling

TEST_F(DispatchVnodeSourceTest, NothingIsCheckedAfterCancelOrDestruction)
{
    for (const bool isCancelled : {true, false}) {
        script.reset();
        cancellations = 0;
        watch();
        holdAndGrow();
        if (isCancelled) {
            source->cancel();
        } else {
            source.reset();
        }
        lock.reset();
        pass(1h);
        EXPECT_TRUE(seen.empty());
        EXPECT_EQ(cancellations, isCancelled ? 1 : 0);
        EXPECT_EQ(script.timer(), nullptr);
    }
}

TEST_F(DispatchVnodeSourceTest, HandlerMayDestroyTheSourceWhileGrowthWaits)
{
    watch();
    source->setEventHandler([this] {
        seen.push_back(vnodeExtend);
        holdAndGrow();
        source.reset();
    });
    grow();
    script.run();
    lock.reset();
    pass(5ms);
    grow();
    pass(1h);
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(script.timer(), nullptr);
}

TEST_F(DispatchVnodeSourceTest, SourceIsActivatedBeforeItIsReleased)
{
    for (const bool isCancelled : {true, false}) {
        script.reset();
        source = makeDispatchVnodeSource(opened.get(), vnodeExtend, mainQueue(), clock);
        if (isCancelled) {
            source->cancel();
            script.run();
        }
        source.reset();
        EXPECT_EQ(
            script.calls,
            (std::vector<std::string>{
                "set event handler", "set cancel handler", "cancel", "activate", "release"}));
    }
}

} // namespace
} // namespace orlimo
