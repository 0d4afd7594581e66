#include "watch/FileMonitor.h"

#include "platform/files/FileHandle.h"
#include "tests/support/Await.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ScriptedVnodeSource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/UnprivilegedUser.h"
#include "tests/watch/CountingDelegate.h"
#include "tests/watch/SystemWatchServices.h"
#include "tests/watch/WatchBackend.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// Bits of the vnode filter that stand for other changes than growth.
constexpr VnodeEvents vnodeDelete = 0x1;
constexpr VnodeEvents vnodeWrite = 0x2;
constexpr VnodeEvents vnodeAttributes = 0x8;
constexpr VnodeEvents vnodeRename = 0x20;

/// Writes over the first bytes of a file without making it longer.
void overwriteStartOf(const std::filesystem::path& file, std::string_view bytes)
{
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    ASSERT_TRUE(stream.good());
}

/// How many descriptors this process has open.
std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
}

/// The error with which `work` fails; none when it does not.
template <typename Work> std::error_code errorOf(const Work& work)
{
    try {
        work();
    } catch (const std::system_error& error) {
        return error.code();
    }
    return {};
}

/// The host's libraries keep files of their own open from their first use on.
void openLazySystemFiles()
{
    (void)errorOf([] { (void)FileHandle::openForReading("/there is no such file"); });
}

/// The cases that every source must pass. The clock and the decisions of the throttle are in the
/// test's hand; main-thread work runs on the event loop.
class FileMonitorTest : public testing::TestWithParam<std::string>
{
protected:
    FileMonitorTest() { writeFile(file, content); }
    void TearDown() override { backend->end(); }

    [[nodiscard]] WatchServices services()
    {
        return {
            mainQueue(),
            decisions,
            clock.function(),
            backend->factory(),
            FileHandle::openForReading};
    }

    /// Starts a monitor that nobody keeps and whose throttle is closed.
    std::weak_ptr<FileMonitor> startClosed()
    {
        const auto monitor = FileMonitor::create(file, services());
        monitor->setDelegate(delegate);
        return monitor;
    }

    /// Starts a monitor that nobody keeps and whose throttle is open.
    std::weak_ptr<FileMonitor> start()
    {
        auto monitor = startClosed();
        clock.advance(1600ms);
        return monitor;
    }

    void grow(const std::filesystem::path& path)
    {
        appendToFile(path, "more");
        backend->notifyChange(vnodeExtend);
    }
    void grow() { grow(file); }

    /// Waits until the source has fired once more and takes the throttle's decision. The delegate
    /// is told on the event loop, later.
    [[nodiscard]] bool awaitDecision()
    {
        return await([this] { return decisions.waiting() > 0; }) && decisions.run() == 1;
    }

    /// Grows the file and runs whatever follows; tells how often the delegate was told.
    [[nodiscard]] int callsAfterGrowth(const std::filesystem::path& path)
    {
        const int before = delegate->calls;
        grow(path);
        EXPECT_TRUE(awaitDecision());
        QCoreApplication::processEvents();
        return delegate->calls - before;
    }
    [[nodiscard]] int callsAfterGrowth() { return callsAfterGrowth(file); }

    /// Whether the source fires although it should not.
    [[nodiscard]] bool firesSoon()
    {
        return await([this] { return decisions.waiting() > 0; }, 150ms);
    }

    const std::string content = std::string(2000, 'x');
    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "store-log";
    ManualClock clock;
    ManualQueue decisions;
    std::unique_ptr<WatchBackend> backend = WatchBackend::named(GetParam());
    std::shared_ptr<CountingDelegate> delegate = std::make_shared<CountingDelegate>();
};

INSTANTIATE_TEST_SUITE_P(
    Source, FileMonitorTest, testing::Values("Native", "Scripted"), [](const auto& instance) {
        return instance.param;
    });

TEST_P(FileMonitorTest, TellsOfGrowthOnceAndOnTheMainThread)
{
    start();
    EXPECT_EQ(callsAfterGrowth(), 1);
    EXPECT_EQ(delegate->offMainThreadCalls, 0);
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 1);
}

TEST_P(FileMonitorTest, SaysThatItStartsAndNothingElse)
{
    std::string text;
    {
        const OutputCapture output;
        start();
        (void)callsAfterGrowth();
        (void)callsAfterGrowth();
        text = output.text();
    }
    EXPECT_EQ(text, "init file monitor\n");
}

TEST_P(FileMonitorTest, DropsGrowthInTheFirst1600Milliseconds)
{
    startClosed();
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1600ms - 1ns);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1ns);
    EXPECT_EQ(callsAfterGrowth(), 1);
}

TEST_P(FileMonitorTest, DropsTheSecondOfTwoAppendsHalfASecondApartForGood)
{
    start();
    EXPECT_EQ(callsAfterGrowth(), 1);
    clock.advance(500ms);
    EXPECT_EQ(callsAfterGrowth(), 0);

    clock.advance(1h);
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 1);

    EXPECT_EQ(callsAfterGrowth(), 1);
}

TEST_P(FileMonitorTest, MeasuresTheIntervalFromTheGrowthThatWasTold)
{
    start();
    EXPECT_EQ(callsAfterGrowth(), 1);
    clock.advance(1s);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(600ms);
    EXPECT_EQ(callsAfterGrowth(), 1);
}

TEST_P(FileMonitorTest, OverwritingIsNotGrowth)
{
    start();
    overwriteStartOf(file, "overwritten");
    backend->notifyChange(vnodeWrite);
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(callsAfterGrowth(), 1);
}

TEST_P(FileMonitorTest, TruncatingIsNotGrowth)
{
    start();
    std::filesystem::resize_file(file, 100);
    backend->notifyChange(vnodeWrite | vnodeAttributes);
    std::filesystem::resize_file(file, 0);
    backend->notifyChange(vnodeWrite | vnodeAttributes);
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 0);
}

TEST_P(FileMonitorTest, GrowthAfterAShrinkCounts)
{
    start();
    std::filesystem::resize_file(file, 0);
    backend->notifyChange(vnodeWrite | vnodeAttributes);

    // Byte by byte, and never up to the size that the file had.
    bool fired = false;
    for (std::size_t size = 1; size < content.size() && !fired; ++size) {
        appendToFile(file, "x");
        backend->notifyChange(vnodeExtend);
        fired = await([this] { return decisions.waiting() > 0; }, 2ms);
    }
    EXPECT_TRUE(fired);
    EXPECT_LT(std::filesystem::file_size(file), content.size());
    decisions.run();
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate->calls, 1);
}

TEST_P(FileMonitorTest, AMissingFileFailsAfterTheLine)
{
    const auto missing = folder.path() / "missing";
    openLazySystemFiles();
    const auto descriptors = openDescriptors();
    std::string text;
    std::error_code error;
    {
        const OutputCapture output;
        error = errorOf([&] { (void)FileMonitor::create(missing, services()); });
        text = output.text();
    }
    EXPECT_EQ(error, std::error_code(ENOENT, std::generic_category()));
    EXPECT_EQ(text, "init file monitor\n");
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_P(FileMonitorTest, AFileThatMayNotBeReadFailsAfterTheLine)
{
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const auto run = runForked([this] {
        becomeUnprivilegedUser();
        const auto error = errorOf([this] { (void)FileMonitor::create(file, services()); });
        ::_exit(error.category() == std::generic_category() ? error.value() : 255);
    });
    EXPECT_EQ(run.status, EACCES);
    EXPECT_EQ(run.output, "init file monitor\n");
    EXPECT_EQ(run.errors, "");
}

TEST_P(FileMonitorTest, KeepsItselfAliveWhenNobodyKeepsIt)
{
    const auto monitor = start();
    EXPECT_FALSE(monitor.expired());
    EXPECT_EQ(callsAfterGrowth(), 1);
    clock.advance(1h);
    EXPECT_EQ(callsAfterGrowth(), 1);
    EXPECT_FALSE(monitor.expired());
}

TEST_P(FileMonitorTest, DoesNotKeepItsDelegateAlive)
{
    start();
    const std::weak_ptr<CountingDelegate> observed = delegate;
    delegate.reset();
    EXPECT_TRUE(observed.expired());
}

TEST_P(FileMonitorTest, ADelegateThatHasGoneAwayIsNotTold)
{
    const auto monitor = start();
    delegate.reset();
    std::string text;
    {
        const OutputCapture output;
        grow();
        EXPECT_TRUE(awaitDecision());
        QCoreApplication::processEvents();
        text = output.text();
    }
    EXPECT_EQ(text, "");

    // The call was accepted all the same, and the monitor goes on.
    delegate = std::make_shared<CountingDelegate>();
    monitor.lock()->setDelegate(delegate);
    EXPECT_EQ(callsAfterGrowth(), 0);
    clock.advance(1600ms);
    EXPECT_EQ(callsAfterGrowth(), 1);
}

TEST_P(FileMonitorTest, AMonitorWithoutADelegateDoesNotFail)
{
    FileMonitor::create(file, services());
    clock.advance(1600ms);
    grow();
    EXPECT_TRUE(awaitDecision());
    QCoreApplication::processEvents();
}

TEST_P(FileMonitorTest, TellsWhoIsDelegateWhenTheActionRuns)
{
    const auto monitor = FileMonitor::create(file, services());
    monitor->setDelegate(delegate);
    clock.advance(1600ms);
    grow();
    EXPECT_TRUE(awaitDecision());

    const auto later = std::make_shared<CountingDelegate>();
    monitor->setDelegate(later);
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate->calls, 0);
    EXPECT_EQ(later->calls, 1);
}

TEST_P(FileMonitorTest, DoesNotTellADelegateThatGoesAwayBeforeTheActionRuns)
{
    start();
    grow();
    EXPECT_TRUE(awaitDecision());
    const std::weak_ptr<CountingDelegate> observed = delegate;
    delegate.reset();
    EXPECT_TRUE(observed.expired());
    QCoreApplication::processEvents();
}

TEST_P(FileMonitorTest, TellsADelegateThatComesAfterTheGrowth)
{
    const auto monitor = FileMonitor::create(file, services());
    clock.advance(1600ms);
    grow();
    EXPECT_TRUE(awaitDecision());
    monitor->setDelegate(delegate);
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate->calls, 1);
}

TEST_P(FileMonitorTest, FollowsARenamedFile)
{
    start();
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    backend->notifyChange(vnodeRename);
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(callsAfterGrowth(renamed), 1);
}

TEST_P(FileMonitorTest, HearsNothingMoreOfADeletedFile)
{
    const auto monitor = start();
    std::filesystem::remove(file);
    backend->notifyChange(vnodeDelete);
    EXPECT_FALSE(firesSoon());

    writeFile(file, "a new file of the same name");
    appendToFile(file, "more");
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 0);
    EXPECT_FALSE(monitor.expired());
}

TEST_P(FileMonitorTest, HearsNothingOfTheFileThatReplacesTheWatchedOne)
{
    start();
    const auto other = folder.path() / "other";
    writeFile(other, content + content);
    std::filesystem::rename(other, file);
    backend->notifyChange(vnodeDelete);
    appendToFile(file, "more");
    EXPECT_FALSE(firesSoon());
    EXPECT_EQ(delegate->calls, 0);
}

TEST_P(FileMonitorTest, ASecondMonitorOfTheSameFileIsTheFirstOnesEqual)
{
    start();
    const auto second = std::make_shared<CountingDelegate>();
    FileMonitor::create(file, services())->setDelegate(second);
    clock.advance(1600ms);
    grow();
    ASSERT_TRUE(await([this] { return decisions.waiting() == 2; }));
    decisions.run();
    QCoreApplication::processEvents();
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_EQ(second->calls, 1);
}

TEST(NativeFileMonitor, TellsOnTheMainThreadThroughTheBackgroundQueue)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "store-log";
    writeFile(file, "start");
    ManualClock clock;
    const auto backend = WatchBackend::named("Native");
    auto services = systemWatchServices();
    services.clock = clock.function();
    services.makeVnodeSource = backend->factory();
    const auto delegate = std::make_shared<CountingDelegate>();
    FileMonitor::create(file, services)->setDelegate(delegate);
    for (int growth = 1; growth <= 3; ++growth) {
        clock.advance(1600ms);
        appendToFile(file, "more");
        EXPECT_TRUE(await([&] { return delegate->calls == growth; })) << growth;
    }
    EXPECT_EQ(delegate->offMainThreadCalls, 0);
    backend->end();
}

TEST(NativeFileMonitor, AWatchThatCannotBeMadeFailsAndClosesTheFile)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "store-log";
    writeFile(file, "start");
    openLazySystemFiles();
    const auto descriptors = openDescriptors();
    auto services = systemWatchServices();
    services.makeVnodeSource = [](int, VnodeEvents, Queue&) -> std::unique_ptr<VnodeSource> {
        throw std::system_error(EMFILE, std::generic_category());
    };
    std::string text;
    std::error_code error;
    {
        const OutputCapture output;
        error = errorOf([&] { (void)FileMonitor::create(file, services); });
        text = output.text();
    }
    EXPECT_EQ(error, std::error_code(EMFILE, std::generic_category()));
    EXPECT_EQ(text, "init file monitor\n");
    EXPECT_EQ(openDescriptors(), descriptors);
}

/// The system's own source on a system that has nothing left to start it with.
class UnstartableSource final : public VnodeSource
{
public:
    explicit UnstartableSource(std::unique_ptr<VnodeSource> systemsOwn)
        : source(std::move(systemsOwn))
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

TEST(NativeFileMonitor, AWatchThatCannotBeStartedFailsAndIsFreed)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "store-log";
    writeFile(file, "start");
    openLazySystemFiles();
    const auto descriptors = openDescriptors();
    auto services = systemWatchServices();
    services.makeVnodeSource = [](int descriptor, VnodeEvents mask, Queue& queue) {
        return std::make_unique<UnstartableSource>(
            makeFileSystemObjectSource(descriptor, mask, queue));
    };
    std::error_code error;
    {
        const OutputCapture output;
        error = errorOf([&] { (void)FileMonitor::create(file, services); });
    }
    EXPECT_EQ(error, std::error_code(EAGAIN, std::generic_category()));
    EXPECT_TRUE(await([&] { return openDescriptors() == descriptors; }));
}

/// What the monitor does to its source, with a source that notes it.
class FileMonitorAndItsSource : public testing::Test
{
protected:
    FileMonitorAndItsSource() { writeFile(file, "twelve bytes"); }
    void TearDown() override { script->dropHandlers(); }

    [[nodiscard]] WatchServices services()
    {
        return {
            main,
            decisions,
            clock.function(),
            ScriptedVnodeSource::factory(script),
            FileHandle::openForReading};
    }

    std::weak_ptr<FileMonitor> start()
    {
        const auto monitor = FileMonitor::create(file, services());
        monitor->setDelegate(delegate);
        return monitor;
    }

    /// Whether the descriptor that the source was given leads to the watched file.
    [[nodiscard]] bool sourceSeesTheFile() const
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
    ManualQueue main;
    ManualQueue decisions;
    std::shared_ptr<ScriptedVnodeSource::Script> script =
        std::make_shared<ScriptedVnodeSource::Script>();
    std::shared_ptr<CountingDelegate> delegate = std::make_shared<CountingDelegate>();
};

TEST_F(FileMonitorAndItsSource, AsksForTheGrowthOfTheOpenFileOnTheMainQueue)
{
    start();
    EXPECT_TRUE(sourceSeesTheFile());
    EXPECT_EQ(::fcntl(script->fileDescriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(script->mask, 0x4U);
    EXPECT_EQ(script->queue, &main);
}

TEST_F(FileMonitorAndItsSource, SetsTheHandlersThenGoesToTheEndOfTheFileThenResumes)
{
    start();
    EXPECT_EQ(
        script->namesOfCalls(),
        (std::vector<std::string>{"make", "setEventHandler", "setCancelHandler", "resume"}));
    std::vector<long> positions;
    for (const auto& call : script->calls) {
        positions.push_back(call.position);
    }
    EXPECT_EQ(positions, (std::vector{0L, 0L, 0L, 12L}));
}

TEST_F(FileMonitorAndItsSource, WatchesNothingBeforeAMissingFileFails)
{
    std::filesystem::remove(file);
    EXPECT_EQ(errorOf([this] { start(); }).value(), ENOENT);
    EXPECT_TRUE(script->calls.empty());
}

TEST_F(FileMonitorAndItsSource, StartsTheThrottlesClockFirst)
{
    auto slow = services();
    slow.makeVnodeSource =
        [this, made = slow.makeVnodeSource](int fileDescriptor, VnodeEvents mask, Queue& queue) {
            clock.advance(1600ms);
            return made(fileDescriptor, mask, queue);
        };
    FileMonitor::create(file, slow)->setDelegate(delegate);
    script->fire(vnodeExtend);
    decisions.run();
    main.run();
    EXPECT_EQ(delegate->calls, 1);
}

TEST_F(FileMonitorAndItsSource, OffersEachGrowthToTheThrottleOnce)
{
    start();
    for (std::size_t growth = 1; growth <= 5; ++growth) {
        script->fire(vnodeExtend);
        EXPECT_EQ(decisions.waiting(), growth);
    }
    EXPECT_EQ(main.waiting(), 0U);
}

TEST_F(FileMonitorAndItsSource, IgnoresEventsWithoutGrowth)
{
    start();
    clock.advance(1600ms);
    for (const VnodeEvents events :
         {0U, vnodeDelete, vnodeWrite, vnodeAttributes, vnodeRename, ~vnodeExtend})
    {
        script->fire(events);
        EXPECT_EQ(decisions.waiting(), 0U) << events;
    }
    script->fire(vnodeWrite | vnodeExtend | vnodeAttributes);
    EXPECT_EQ(decisions.waiting(), 1U);
}

TEST_F(FileMonitorAndItsSource, ReadsNothingFromTheFile)
{
    start();
    clock.advance(1600ms);
    appendToFile(file, "more");
    script->fire(vnodeExtend);
    decisions.run();
    main.run();
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_EQ(::lseek(script->fileDescriptor, 0, SEEK_CUR), 12);
}

TEST_F(FileMonitorAndItsSource, ClosesTheFileInTheCancelHandlerAndNotBefore)
{
    const auto monitor = start().lock();
    ASSERT_NE(monitor, nullptr);
    EXPECT_TRUE(sourceSeesTheFile());
    script->runCancelHandler();
    EXPECT_FALSE(sourceSeesTheFile());
}

TEST_F(FileMonitorAndItsSource, ACloseThatFailsIsSilent)
{
    const auto monitor = start().lock();
    ASSERT_NE(monitor, nullptr);
    ::close(script->fileDescriptor); // behind the monitor's back
    std::string text;
    {
        const OutputCapture output;
        EXPECT_NO_THROW(script->runCancelHandler());
        text = output.text();
    }
    EXPECT_EQ(text, "");
}

TEST_F(FileMonitorAndItsSource, LivesAsLongAsEitherHandler)
{
    const auto monitor = start();
    const auto dropped = std::exchange(script->eventHandler, {});
    EXPECT_FALSE(monitor.expired());
    script->eventHandler = dropped;
    script->cancelHandler = {};
    EXPECT_FALSE(monitor.expired());
}

TEST_F(FileMonitorAndItsSource, CancelsTheSourceAndClosesTheFileIfItEverGoes)
{
    const auto monitor = start();
    script->dropHandlers();
    EXPECT_TRUE(monitor.expired());
    ASSERT_EQ(script->calls.size(), 6U);
    EXPECT_EQ(script->calls[4].name, "cancel");
    EXPECT_EQ(script->calls[5].name, "destroy");
    EXPECT_FALSE(sourceSeesTheFile());
}

TEST_F(FileMonitorAndItsSource, AnAcceptedCallKeepsTheMonitorUntilItHasRun)
{
    const auto monitor = start();
    clock.advance(1600ms);
    script->fire(vnodeExtend);
    decisions.run();
    script->dropHandlers();
    EXPECT_FALSE(monitor.expired());
    main.run();
    EXPECT_EQ(delegate->calls, 1);
    EXPECT_TRUE(monitor.expired());
}

} // namespace
} // namespace orlimo
