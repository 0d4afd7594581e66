#include "watch/FileMonitor.h"

#include "platform/files/FileHandle.h"
#include "platform/threads/MainThread.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ScriptedVnodeSource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
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

constexpr const char* startLine = "init file monitor\n";

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

/// How many descriptors this process has open.
std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
}

/// How the creation of a monitor failed, and what was logged meanwhile.
struct Failure
{
    int error = 0;
    std::string log;
};

Failure failureOfCreation(const std::filesystem::path& file, const WatchServices& services)
{
    const OutputCapture output;
    try {
        (void)FileMonitor::create(file, services);
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().category(), std::generic_category());
        return {error.code().value(), output.text()};
    }
    return {};
}

/// A file, and a clock and a queue of decisions that the test controls.
class FileMonitorTestBase : public testing::Test
{
protected:
    FileMonitorTestBase() { writeFile(file, "twelve bytes"); }

    [[nodiscard]] virtual WatchServices services() = 0;

    /// Starts a monitor to which the test keeps no reference, with a closed throttle.
    std::weak_ptr<FileMonitor> startClosed()
    {
        const auto monitor = FileMonitor::create(file, services());
        monitor->setDelegate(delegate);
        return monitor;
    }

    /// The same with an open throttle.
    std::weak_ptr<FileMonitor> start()
    {
        auto monitor = startClosed();
        clock.advance(1600ms);
        return monitor;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "store-log";
    ManualClock clock;
    ManualQueue decisions;
    std::shared_ptr<CountingDelegate> delegate = std::make_shared<CountingDelegate>();
};

/// With the system's own vnode source; main-thread work runs on the event loop.
class FileMonitorTest : public FileMonitorTestBase
{
protected:
    void TearDown() override
    {
        for (VnodeSource* const source : sources) {
            source->cancel();
        }
        runEventLoop(1ms);
    }

    [[nodiscard]] WatchServices services() override
    {
        return {
            mainQueue(),
            decisions,
            clock.function(),
            [this](int fileDescriptor, VnodeEvents mask, Queue& queue) {
                auto source = makeFileSystemObjectSource(fileDescriptor, mask, queue);
                sources.push_back(source.get());
                return source;
            },
            FileHandle::openForReading};
    }

    /// Lengthens `path` and waits until the monitor's throttle has decided.
    void grow(const std::filesystem::path& path)
    {
        appendToFile(path, "more");
        ASSERT_TRUE(await([this] { return decisions.waiting() > 0; })) << "growth is not reported";
        decisions.run();
    }

    [[nodiscard]] int callsAfterGrowth(const std::filesystem::path& path)
    {
        const int before = delegate->calls;
        grow(path);
        QCoreApplication::processEvents();
        return delegate->calls - before;
    }
    [[nodiscard]] int callsAfterGrowth() { return callsAfterGrowth(file); }

    /// Whether the source fires although nothing has grown.
    [[nodiscard]] bool firesSoon()
    {
        return await([this] { return decisions.waiting() > 0; }, 150ms);
    }

    std::vector<VnodeSource*> sources;
};

TEST_F(FileMonitorTest, GrowthIsReportedOnceAnIntervalOnMainThread)
{
    std::string log;
    {
        const OutputCapture output;
        startClosed();
        EXPECT_EQ(callsAfterGrowth(), 0);
        clock.advance(1600ms - 1ns);
        EXPECT_EQ(callsAfterGrowth(), 0);
        clock.advance(1ns);
        EXPECT_EQ(callsAfterGrowth(), 1);
        clock.advance(500ms);
        EXPECT_EQ(callsAfterGrowth(), 0);
        clock.advance(1h);
        EXPECT_FALSE(firesSoon()) << "dropped growth is never made up for";
        EXPECT_EQ(callsAfterGrowth(), 1);
        log = output.text();
    }
    EXPECT_EQ(log, startLine);
    EXPECT_EQ(delegate->calls, 2);
    EXPECT_EQ(delegate->offMainThreadCalls, 0);
}

TEST_F(FileMonitorTest, OverwritingTruncatingAndRenamingAreNotGrowth)
{
    start();
    std::fstream(file, std::ios::in | std::ios::out) << "overwritten";
    std::filesystem::resize_file(file, 3);
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    EXPECT_FALSE(firesSoon());
    appendToFile(renamed, std::string(100, 'x')); // beyond the size that it had
    EXPECT_EQ(callsAfterGrowth(renamed), 1);
}

TEST_F(FileMonitorTest, DeletedFileIsNotReopened)
{
    const auto monitor = start();
    const auto other = folder.path() / "other";
    writeFile(other, std::string(100, 'x'));
    std::filesystem::rename(other, file); // in place of the watched one
    appendToFile(file, "more");
    std::filesystem::remove(file);
    writeFile(file, "a new file of the same name");
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 0);
    EXPECT_FALSE(monitor.expired());
}

TEST_F(FileMonitorTest, ThousandsOfWritesOfManyThreadsAreOneCallAnInterval)
{
    auto background = services();
    FileMonitor::create(
        file,
        {mainQueue(),
         backgroundQueue(),
         clock.function(),
         std::move(background.makeVnodeSource),
         FileHandle::openForReading})
        ->setDelegate(delegate);
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

/// What the monitor does to its source, with a source that records it.
class FileMonitorSourceTest : public FileMonitorTestBase
{
protected:
    void TearDown() override { script->dropHandlers(); }

    [[nodiscard]] WatchServices services() override
    {
        return {
            main,
            decisions,
            clock.function(),
            ScriptedVnodeSource::factory(script),
            FileHandle::openForReading};
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

    ManualQueue main;
    std::shared_ptr<ScriptedVnodeSource::Script> script =
        std::make_shared<ScriptedVnodeSource::Script>();
};

TEST_F(FileMonitorSourceTest, SourceIsMadeSetUpAndResumedInOrder)
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
    EXPECT_EQ(
        script->namesOfCalls(),
        (std::vector<std::string>{"make", "setEventHandler", "setCancelHandler", "resume"}));
    EXPECT_EQ(script->calls[2].position, 0);
    EXPECT_EQ(script->calls[3].position, 12) << "the end of the file";
    script->fire(vnodeExtend);
    decisions.run();
    main.run();
    EXPECT_EQ(delegate->calls, 1);
}

TEST_F(FileMonitorSourceTest, OnlyExtendEventsAreOfferedToThrottle)
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

TEST_F(FileMonitorSourceTest, DelegateIsReadWhenActionRunsAndMayBeReleased)
{
    const auto monitor = start();
    const auto later = std::make_shared<CountingDelegate>();
    const std::weak_ptr<CountingDelegate> released = delegate;
    const OutputCapture output;
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
    EXPECT_EQ(output.text(), "");
}

TEST_F(FileMonitorSourceTest, CancelHandlerClosesFileAndIgnoresFailure)
{
    const auto monitor = start().lock();
    ASSERT_TRUE(isFileOpen());
    script->runCancelHandler();
    EXPECT_FALSE(isFileOpen());

    const auto second = start().lock();
    ::close(script->fileDescriptor); // behind the monitor's back
    const OutputCapture output;
    EXPECT_NO_THROW(script->runCancelHandler());
    EXPECT_EQ(output.text(), "");
}

TEST_F(FileMonitorSourceTest, EitherHandlerKeepsMonitorAlive)
{
    const auto monitor = start();
    const auto dropped = std::exchange(script->eventHandler, {});
    EXPECT_FALSE(monitor.expired());
    script->eventHandler = dropped;
    script->cancelHandler = {};
    EXPECT_FALSE(monitor.expired());
}

TEST_F(FileMonitorSourceTest, AcceptedActionKeepsMonitorUntilItRuns)
{
    const auto monitor = start();
    script->fire(vnodeExtend);
    decisions.run();
    script->dropHandlers();
    EXPECT_FALSE(monitor.expired());
    main.run();
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_TRUE(monitor.expired());
    ASSERT_EQ(script->calls.size(), 6U);
    EXPECT_EQ(script->calls[4].name, "cancel");
    EXPECT_EQ(script->calls[5].name, "destroy");
    EXPECT_FALSE(isFileOpen());
}

/// The system's own source where it cannot be started.
class UnstartableSource final : public VnodeSource
{
public:
    UnstartableSource(int fileDescriptor, VnodeEvents mask)
        : source(makeFileSystemObjectSource(fileDescriptor, mask, mainQueue()))
    {}

    void setEventHandler(Handler handler) override { source->setEventHandler(std::move(handler)); }
    void setCancelHandler(Handler handler) override
    {
        source->setCancelHandler(std::move(handler));
    }
    void resume() override { throw std::system_error(EAGAIN, std::generic_category()); }
    void cancel() override { source->cancel(); }
    [[nodiscard]] VnodeEvents data() const override { return source->data(); }

private:
    std::unique_ptr<VnodeSource> source;
};

TEST_F(FileMonitorSourceTest, FailedCreationThrowsAfterTheLineAndFreesEverything)
{
    const auto missing = folder.path() / "missing";
    (void)failureOfCreation(missing, services()); // the system opens files of its own once
    const auto descriptors = openDescriptors();

    const auto missingFile = failureOfCreation(missing, services());
    EXPECT_EQ(missingFile.error, ENOENT);
    EXPECT_EQ(missingFile.log, startLine);
    EXPECT_TRUE(script->calls.empty());
    EXPECT_FALSE(std::filesystem::exists(missing));

    auto failing = services();
    failing.makeVnodeSource = [](int, VnodeEvents, Queue&) -> std::unique_ptr<VnodeSource> {
        throw std::system_error(EMFILE, std::generic_category());
    };
    const auto noSource = failureOfCreation(file, failing);
    EXPECT_EQ(noSource.error, EMFILE);
    EXPECT_EQ(noSource.log, startLine);
    EXPECT_EQ(openDescriptors(), descriptors);

    failing.makeVnodeSource = [](int fileDescriptor, VnodeEvents mask, Queue&) {
        return std::make_unique<UnstartableSource>(fileDescriptor, mask);
    };
    EXPECT_EQ(failureOfCreation(file, failing).error, EAGAIN);
    EXPECT_TRUE(await([&] { return openDescriptors() == descriptors; }));
}

} // namespace
} // namespace orlimo
