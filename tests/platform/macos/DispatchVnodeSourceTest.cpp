#include "platform/macos/DispatchVnodeSource.h"

#include "platform/posix/UniqueFd.h"
#include "tests/platform/ForeignLock.h"
#include "tests/platform/macos/fakes/ScriptedDispatch.h"
#include "tests/support/TemporaryFolder.h"
#include "watch/FileMonitor.h"

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
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using Calls = std::vector<std::string>;

constexpr VnodeEvents vnodeWrite = 0x2;

/// A source on the main dispatch queue for a store's log. Queue, clock and events are in the test's
/// hand; the file, its shared index and the writer's lock are real.
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

    void make(VnodeEvents mask = vnodeExtend)
    {
        source = makeDispatchVnodeSource(opened.get(), mask, mainQueue(), script.clock());
        source->setEventHandler([this] { seen.push_back(source->data()); });
        source->setCancelHandler([this] { ++cancellations; });
    }
    void watch(VnodeEvents mask = vnodeExtend)
    {
        make(mask);
        source->resume();
    }

    void hold() { lock.emplace(index, 120); }
    void letGo() { lock.reset(); }

    /// Lengthens the file and has the system tell of it.
    void grow()
    {
        appendToFile(log, "more");
        script.fire(vnodeExtend);
    }

    void pass(std::chrono::nanoseconds span)
    {
        script.advance(span);
        script.runMainQueue();
    }

    [[nodiscard]] std::size_t events() const { return seen.size(); }

    ScriptedDispatch& script = ScriptedDispatch::shared();
    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    UniqueFd opened;
    std::optional<ForeignLock> lock;
    std::vector<VnodeEvents> seen;
    int cancellations = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(DispatchVnodeSourceTest, IsMadeForTheDescriptorAndTheMaskOnTheMainQueue)
{
    make();
    ASSERT_EQ(script.numberOfSources(), 1U);
    EXPECT_EQ(script.source().handle, static_cast<std::uintptr_t>(opened.get()));
    EXPECT_EQ(script.source().mask, 0x4U);
    EXPECT_EQ(script.source().queue, "main");
}

TEST_F(DispatchVnodeSourceTest, ReportsGrowthOnTheMainQueueAndSaysWhatItIs)
{
    watch();
    EXPECT_EQ(source->data(), 0U);
    grow();
    EXPECT_EQ(events(), 0U);
    script.runMainQueue();
    EXPECT_EQ(seen, std::vector{vnodeExtend});
    EXPECT_EQ(source->data(), 0U);
    grow();
    script.runMainQueue();
    EXPECT_EQ(events(), 2U);
    EXPECT_TRUE(script.delays().empty());
}

TEST_F(DispatchVnodeSourceTest, DoesNotTellAgainOfGrowthThatWasDeliveredAlready)
{
    watch();
    grow();
    script.runMainQueue();
    script.fire(vnodeExtend);
    script.runMainQueue();
    EXPECT_EQ(events(), 1U);
}

TEST_F(DispatchVnodeSourceTest, PassesOtherEventsOnThatWereAskedFor)
{
    watch(vnodeWrite | vnodeExtend);
    EXPECT_EQ(script.source().mask, 0x6U);
    hold();
    script.fire(vnodeWrite);
    script.runMainQueue();
    EXPECT_EQ(seen, std::vector{vnodeWrite});
}

TEST_F(DispatchVnodeSourceTest, FailsForWhatIsNotOpen)
{
    try {
        (void)makeDispatchVnodeSource(-1, vnodeExtend, mainQueue(), script.clock());
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(EBADF, std::generic_category()));
    }
}

TEST_F(DispatchVnodeSourceTest, FailsForEventsThatThereAreNot)
{
    try {
        make(0);
        FAIL() << "there is nothing to report";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(EINVAL, std::generic_category()));
    }
}

// While another process holds the writer's lock

TEST_F(DispatchVnodeSourceTest, WithholdsGrowthFromTheFirstFrameToTheCommit)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    pass(500ms);
    EXPECT_EQ(events(), 0U);
    letGo();
    pass(5ms);
    EXPECT_EQ(events(), 1U);
    pass(1h);
    EXPECT_EQ(events(), 1U);
}

TEST_F(DispatchVnodeSourceTest, LooksAgainInPausesThatGrow)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    EXPECT_EQ(script.delays(), std::vector<std::chrono::nanoseconds>{100us});
    pass(100us);
    EXPECT_EQ(script.delays(), std::vector<std::chrono::nanoseconds>{100us});
    pass(7900us);
    EXPECT_EQ(script.delays(), std::vector<std::chrono::nanoseconds>{1ms});
    pass(100ms);
    EXPECT_EQ(script.delays(), std::vector<std::chrono::nanoseconds>{5ms});
}

TEST_F(DispatchVnodeSourceTest, WaitsByAStrictTimerOfItsQueue)
{
    watch();
    EXPECT_TRUE(script.timers().empty()) << "nothing waits";
    hold();
    grow();
    script.runMainQueue();
    pass(8ms);
    const auto timers = script.timers();
    ASSERT_EQ(timers.size(), 1U) << "one for all pauses";
    EXPECT_TRUE(timers.front().isStrict);
    EXPECT_EQ(timers.front().leeway, 0ns);
    EXPECT_TRUE(timers.front().active);
    EXPECT_EQ(timers.front().queue, "main");
    source->cancel();
    script.runMainQueue();
    EXPECT_TRUE(script.timers().empty());
}

TEST_F(DispatchVnodeSourceTest, AllGrowthOfACommitIsOneEvent)
{
    watch();
    hold();
    for (int frame = 0; frame < 10; ++frame) {
        grow();
        script.runMainQueue();
        EXPECT_EQ(script.delays().size(), 1U) << "one look is enough";
        pass(1ms);
    }
    grow(); // told of only when the writer has let go
    letGo();
    pass(5ms);
    EXPECT_EQ(events(), 1U);
    EXPECT_TRUE(script.delays().empty());
}

TEST_F(DispatchVnodeSourceTest, ALateWordOfTheLastFramesIsNotAnotherEvent)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    appendToFile(log, "last");
    letGo();
    pass(5ms);
    EXPECT_EQ(events(), 1U);
    script.fire(vnodeExtend);
    script.runMainQueue();
    EXPECT_EQ(events(), 1U);
}

TEST_F(DispatchVnodeSourceTest, AnEventFindsTheLockFreeBeforeTheNextLookDoes)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    letGo();
    grow();
    script.runMainQueue();
    EXPECT_EQ(events(), 1U);
    pass(1s);
    EXPECT_EQ(events(), 1U) << "the look that was due finds nothing";
    EXPECT_TRUE(script.delays().empty());
}

TEST_F(DispatchVnodeSourceTest, IsNotHeldUpByTheLockOfAnotherFile)
{
    const auto plain = folder.path() / "plain";
    writeFile(plain, "plain");
    opened = UniqueFd(::open(plain.c_str(), O_RDONLY | O_CLOEXEC));
    watch();
    hold();
    script.fire(vnodeExtend);
    script.runMainQueue();
    EXPECT_EQ(events(), 1U);
}

// Cancelling

TEST_F(DispatchVnodeSourceTest, RunsTheCancelHandlerOnceAndLater)
{
    watch();
    source->cancel();
    EXPECT_EQ(cancellations, 0);
    script.runMainQueue();
    EXPECT_EQ(cancellations, 1);
    source->cancel();
    script.runMainQueue();
    EXPECT_EQ(cancellations, 1);
}

TEST_F(DispatchVnodeSourceTest, DropsTheEventThatWaitsWhenItIsCancelled)
{
    watch();
    grow();
    source->cancel();
    script.runMainQueue();
    EXPECT_EQ(events(), 0U);
    EXPECT_EQ(cancellations, 1);
}

TEST_F(DispatchVnodeSourceTest, LooksAtNothingAfterCancel)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    source->cancel();
    opened = UniqueFd();
    letGo();
    pass(1h);
    EXPECT_EQ(events(), 0U);
    EXPECT_EQ(cancellations, 1);
    EXPECT_TRUE(script.delays().empty());
}

TEST_F(DispatchVnodeSourceTest, MayGoWhileALookIsDue)
{
    watch();
    hold();
    grow();
    script.runMainQueue();
    source.reset();
    opened = UniqueFd();
    letGo();
    pass(1h);
    EXPECT_EQ(events(), 0U);
    EXPECT_EQ(cancellations, 0) << "nobody cancelled it";
    EXPECT_TRUE(script.delays().empty());
    EXPECT_TRUE(script.timers().empty());
}

TEST_F(DispatchVnodeSourceTest, MayGoInItsOwnEventHandler)
{
    watch();
    int runs = 0;
    source->setEventHandler([this, &runs] {
        ++runs;
        source.reset();
    });
    grow();
    script.runMainQueue();
    EXPECT_EQ(runs, 1);
    grow();
    pass(1h);
    EXPECT_EQ(runs, 1);
}

TEST_F(DispatchVnodeSourceTest, MayGoInItsEventHandlerAfterAPause)
{
    watch();
    int runs = 0;
    source->setEventHandler([this, &runs] {
        ++runs;
        source.reset();
    });
    hold();
    grow();
    script.runMainQueue();
    letGo();
    pass(5ms);
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(script.timers().empty());
}

TEST_F(DispatchVnodeSourceTest, MayGoInItsCancelHandler)
{
    watch();
    source->setCancelHandler([this] {
        ++cancellations;
        source.reset();
    });
    source->cancel();
    script.runMainQueue();
    EXPECT_EQ(cancellations, 1);
}

TEST_F(DispatchVnodeSourceTest, KeepsItsHandlersUntilItIsCancelledAndDropsThemThen)
{
    watch();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    source->setEventHandler([token] {});
    source->setCancelHandler([token] {});
    token.reset();
    source->cancel();
    EXPECT_FALSE(kept.expired());
    script.runMainQueue();
    EXPECT_TRUE(kept.expired());
}

TEST_F(DispatchVnodeSourceTest, IsActivatedBeforeItIsReleasedWhetherItWasResumedOrNot)
{
    make();
    source->cancel();
    script.runMainQueue();
    EXPECT_EQ(cancellations, 1);
    source.reset();
    EXPECT_EQ(
        script.namesOfCalls(),
        (Calls{
            "create", "set event handler", "set cancel handler", "cancel", "activate", "release"}));

    script.reset();
    make();
    source.reset();
    EXPECT_EQ(
        script.namesOfCalls(),
        (Calls{
            "create", "set event handler", "set cancel handler", "cancel", "activate", "release"}));
    EXPECT_EQ(script.source().references, 0);
}

// Under the file monitor

/// The monitor of a file, which does to its source what it does in the running program.
class DispatchVnodeSourceOfAMonitor : public DispatchVnodeSourceTest
{
protected:
    [[nodiscard]] WatchHost host()
    {
        return {
            mainQueue(),
            backgroundQueue(),
            script.clock(),
            [this](int descriptor, VnodeEvents mask, Queue& queue) {
                auto made = makeDispatchVnodeSource(descriptor, mask, queue, script.clock());
                ofMonitor = made.get();
                return made;
            }};
    }

    VnodeSource* ofMonitor = nullptr;
};

TEST_F(DispatchVnodeSourceOfAMonitor, IsMadeThenGivenHandlersThenResumedAtTheEndOfTheFile)
{
    FileMonitor::create(log, host());
    EXPECT_EQ(
        script.namesOfCalls(),
        (Calls{"create", "set event handler", "set cancel handler", "activate"}));
    EXPECT_EQ(script.positionsAtCalls(), (std::vector{0L, 0L, 0L, 10L}));
    ofMonitor->cancel();
    script.runMainQueue();
}

TEST_F(DispatchVnodeSourceOfAMonitor, ClosesTheFileWhenItIsCancelled)
{
    const auto monitor = FileMonitor::create(log, host());
    const auto descriptor = static_cast<int>(script.source().handle);
    ofMonitor->cancel();
    EXPECT_GE(::fcntl(descriptor, F_GETFD), 0) << "the system may still watch it";
    script.runMainQueue();
    EXPECT_LT(::fcntl(descriptor, F_GETFD), 0);
}

} // namespace
} // namespace orlimo
