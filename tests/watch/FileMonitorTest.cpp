#include "watch/FileMonitor.h"

#include "platform/files/FileHandle.h"
#include "platform/threads/MainThread.h"
#include "tests/platform/files/OpenDescriptors.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ProgramOutcomes.h"
#include "tests/support/ScriptedVnodeSource.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* startLine = "init file monitor";

class CountingDelegate final : public FileMonitorDelegate
{
public:
    void fileDidChange() override
    {
        ++calls;
        offMainThreadCalls += isMainThread() ? 0 : 1;
    }

    int calls = 0;
    int offMainThreadCalls = 0;
};

/// A file, a delegate, and a source, a clock and queues that the test controls.
class FileMonitorTest : public testing::Test
{
protected:
    FileMonitorTest()
    {
        writeFile(file, "twelve bytes");
        logged::clear();
    }
    ~FileMonitorTest() override { script->dropHandlers(); }

    [[nodiscard]] WatchServices services()
    {
        return {
            main,
            decisions,
            clock.function(),
            ScriptedVnodeSource::factory(script),
            FileHandle::openForReading};
    }

    /// Starts a monitor to which the test keeps no reference, with an open throttle.
    std::weak_ptr<FileMonitor> start()
    {
        const auto monitor = FileMonitor::create(file, services());
        monitor->setDelegate(delegate);
        clock.advance(1600ms);
        return monitor;
    }

    /// Whether the source's descriptor refers to the watched file.
    [[nodiscard]] bool isFileOpen() const
    {
        struct stat open
        {};
        struct stat named
        {};
        return ::fstat(script->fileDescriptor, &open) == 0 && ::stat(file.c_str(), &named) == 0 &&
               open.st_dev == named.st_dev && open.st_ino == named.st_ino;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "store-log";
    ManualClock clock;
    ManualQueue decisions;
    ManualQueue main;
    std::shared_ptr<ScriptedVnodeSource::Script> script =
        std::make_shared<ScriptedVnodeSource::Script>();
    std::shared_ptr<CountingDelegate> delegate = std::make_shared<CountingDelegate>();
};

/// With the system's own source; main-thread work runs on the event loop.
class RealFileMonitorTest : public FileMonitorTest
{
protected:
    void TearDown() override
    {
        source->cancel();
        runEventLoop(1ms);
    }

    void startWith(Queue& decisionQueue)
    {
        const auto makeSource = [this](int fileDescriptor, VnodeEvents mask, Queue& queue) {
            auto made = makeFileSystemObjectSource(fileDescriptor, mask, queue);
            source = made.get();
            return made;
        };
        FileMonitor::create(
            file,
            {mainQueue(), decisionQueue, clock.function(), makeSource, FileHandle::openForReading})
            ->setDelegate(delegate);
    }

    /// Lengthens the file, waits until the monitor's throttle has decided, and returns how many
    /// calls follow.
    [[nodiscard]] int callsAfterGrowth()
    {
        const int before = delegate->calls;
        appendToFile(file, "more");
        EXPECT_TRUE(await([this] { return decisions.waiting() > 0; })) << "growth is not reported";
        decisions.run();
        QCoreApplication::processEvents();
        return delegate->calls - before;
    }

    VnodeSource* source = nullptr;
};

TEST_F(RealFileMonitorTest, GrowthIsReportedOnceAnIntervalOnMainThread)
{
    startWith(decisions);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1600ms - 1ns);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1ns);
    EXPECT_EQ(callsAfterGrowth(), 1);
    clock.advance(500ms);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1h);
    EXPECT_EQ(callsAfterGrowth(), 1) << "dropped growth is never made up for";
    EXPECT_THAT(logged::lines(), ElementsAre(startLine));
    EXPECT_EQ(delegate->calls, 2);
    EXPECT_EQ(delegate->offMainThreadCalls, 0);
}

TEST_F(RealFileMonitorTest, ThousandsOfWritesOfManyThreadsAreOneCallAnInterval)
{
    startWith(backgroundQueue());
    for (int round = 1; round <= 5; ++round) {
        // What is left of the round before may be this one's call as well.
        clock.advance(1600ms);
        std::vector<JoiningThread> threads;
        for (int writer = 0; writer < 4; ++writer) {
            threads.emplace_back([this] {
                for (int write = 0; write < 250; ++write) {
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
}

// What the monitor does to its source

TEST_F(FileMonitorTest, SourceIsMadeSetUpAndResumedInOrder)
{
    auto slow = services();
    slow.makeVnodeSource = [this, made = slow.makeVnodeSource](auto&&... arguments) {
        clock.advance(1600ms); // the throttle's clock has started before
        return made(arguments...);
    };
    FileMonitor::create(file, slow)->setDelegate(delegate);
    EXPECT_TRUE(isFileOpen());
    EXPECT_EQ(::fcntl(script->fileDescriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(script->mask, 0x4U);
    EXPECT_EQ(script->queue, &main);
    EXPECT_THAT(
        script->namesOfCalls(),
        ElementsAre("make", "setEventHandler", "setCancelHandler", "resume"));
    EXPECT_EQ(script->calls[2].position, 0);
    EXPECT_EQ(script->calls[3].position, 12) << "the end of the file";
    script->fire(vnodeExtend);
    decisions.run();
    main.run();
    EXPECT_EQ(delegate->calls, 1);
}

TEST_F(FileMonitorTest, OnlyExtendEventsAreOfferedToThrottle)
{
    start();
    for (const VnodeEvents events : {0U, 0x1U, 0x2U, 0x8U, 0x20U, ~vnodeExtend}) {
        script->fire(events);
        EXPECT_EQ(decisions.waiting(), 0U) << events;
    }
    script->fire(vnodeExtend);
    script->fire(~0U);
    EXPECT_EQ(decisions.run(), 2U);
    EXPECT_EQ(main.run(), 1U);
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_EQ(::lseek(script->fileDescriptor, 0, SEEK_CUR), 12) << "the file was read";
}

TEST_F(FileMonitorTest, DelegateIsReadWhenActionRunsAndMayBeReleased)
{
    const auto monitor = start();
    const auto later = std::make_shared<CountingDelegate>();
    const std::weak_ptr<CountingDelegate> released = delegate;
    logged::clear();
    for (const auto& present : {later, std::shared_ptr<CountingDelegate>(), later}) {
        clock.advance(1600ms);
        script->fire(vnodeExtend);
        decisions.run();
        monitor.lock()->setDelegate(present);
        delegate.reset();
        EXPECT_TRUE(released.expired()) << "the monitor keeps its delegate alive";
        main.run();
    }
    EXPECT_EQ(later->calls, 2);
    EXPECT_THAT(logged::lines(), IsEmpty());
}

TEST_F(FileMonitorTest, CancelHandlerClosesFileAndIgnoresFailure)
{
    const auto monitor = start().lock();
    ASSERT_TRUE(isFileOpen());
    script->runCancelHandler();
    EXPECT_FALSE(isFileOpen());

    const auto second = start().lock();
    ::close(script->fileDescriptor); // behind the monitor's back
    logged::clear();
    EXPECT_NO_THROW(script->runCancelHandler());
    EXPECT_THAT(logged::lines(), IsEmpty());
}

TEST_F(FileMonitorTest, EitherHandlerKeepsMonitorAlive)
{
    const auto first = start();
    script->eventHandler = {};
    EXPECT_FALSE(first.expired());
    script->dropHandlers();
    EXPECT_TRUE(first.expired());

    const auto second = start();
    script->cancelHandler = {};
    EXPECT_FALSE(second.expired());
}

TEST_F(FileMonitorTest, AcceptedActionKeepsMonitorUntilItRuns)
{
    const auto monitor = start();
    script->fire(vnodeExtend);
    decisions.run();
    script->dropHandlers();
    EXPECT_FALSE(monitor.expired());
    main.run();
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_TRUE(monitor.expired());
    EXPECT_THAT(
        script->namesOfCalls(),
        ElementsAre("make", "setEventHandler", "setCancelHandler", "resume", "cancel", "destroy"));
    EXPECT_FALSE(isFileOpen());
}

class UnstartableSource final : public ScriptedVnodeSource
{
public:
    using ScriptedVnodeSource::ScriptedVnodeSource;
    void resume() override { throw std::system_error(EAGAIN, std::generic_category()); }
};

TEST_F(FileMonitorTest, FailedCreationThrowsAfterTheLineAndFreesEverything)
{
    const auto expectFailure = [](const auto& path, const WatchServices& failing, int error) {
        logged::clear();
        try {
            (void)FileMonitor::create(path, failing);
            FAIL() << "the monitor is created";
        } catch (const std::system_error& failure) {
            EXPECT_EQ(failure.code(), std::error_code(error, std::generic_category()));
        }
        EXPECT_THAT(logged::lines(), ElementsAre(startLine));
    };
    const auto missing = folder.path() / "missing";
    const auto descriptors = openDescriptors();
    expectFailure(missing, services(), ENOENT);
    EXPECT_THAT(script->calls, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(missing));

    auto failing = services();
    failing.makeVnodeSource = [](int, VnodeEvents, Queue&) -> std::unique_ptr<VnodeSource> {
        throw std::system_error(EMFILE, std::generic_category());
    };
    expectFailure(file, failing, EMFILE);
    EXPECT_EQ(openDescriptors(), descriptors);

    failing.makeVnodeSource = [this](int, VnodeEvents, Queue&) {
        return std::make_unique<UnstartableSource>(script);
    };
    expectFailure(file, failing, EAGAIN);
    EXPECT_THAT(
        script->namesOfCalls(), ElementsAre("setEventHandler", "setCancelHandler", "cancel"));
    script->runCancelHandler();
    EXPECT_EQ(script->namesOfCalls().back(), "destroy");
    EXPECT_EQ(openDescriptors(), descriptors);
}

} // namespace
} // namespace orlimo
