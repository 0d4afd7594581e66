#include "tests/platform/files/CommitDetection.h"

#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeSource.h"
#include "tests/platform/files/ForeignLock.h"
#include "tests/platform/files/WriterProcess.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

INSTANTIATE_TEST_SUITE_P(
    Synchronous,
    CommitDetection,
    testing::Values("full", "normal", "off"),
    [](const auto& instance) { return instance.param; });

TEST_P(CommitDetection, EachCommitIsOneEventAtWhichItCanBeRead)
{
    watch(immediately);
    for (int commit = 1; commit <= 60; ++commit) {
        writer.sendCommand("text message " + std::to_string(commit));
        ASSERT_TRUE(awaitEvents(commit));
        ASSERT_EQ(messagesSeen, 1 + commit);
    }
    EXPECT_FALSE(receivesMoreThan(60));
    EXPECT_EQ(events, 60);
}

TEST_P(CommitDetection, ACommitOfManyFramesIsOneEvent)
{
    writer.sendCommand("sql CREATE TABLE load(bytes)");
    watch(immediately);
    for (int commit = 1; commit <= 20; ++commit) {
        const auto before = std::filesystem::file_size(log);
        writer.sendCommand("begin");
        writer.sendCommand("text message " + std::to_string(commit));
        writer.sendCommand("sql INSERT INTO load VALUES (randomblob(400000))");
        writer.sendCommand("commit");
        ASSERT_GT(std::filesystem::file_size(log), before + 400'000);
        ASSERT_TRUE(awaitEvents(commit));
        ASSERT_EQ(messagesSeen, 1 + commit);
    }
    EXPECT_FALSE(receivesMoreThan(20));
    EXPECT_EQ(events, 20);
}

TEST_P(CommitDetection, TheLastOfManyCommitsInARowIsNeverMissed)
{
    watch(immediately);
    for (int round = 1; round <= 10; ++round) {
        for (int commit = 0; commit < 20; ++commit) {
            writer.sendCommand("text message");
        }
        ASSERT_TRUE(await([this, round] { return messagesSeen == 1 + round * 20; }))
            << messagesSeen << " messages were seen in round " << round;
    }
    EXPECT_LE(events, 200);
}

TEST_P(CommitDetection, GrowthInsideATransactionWaitsForTheCommit)
{
    watch(immediately);
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
    timer.start(10ms);
    const auto before = std::filesystem::file_size(log);
    writer.holdTransactionOpen();
    ASSERT_GT(std::filesystem::file_size(log), before);
    EXPECT_FALSE(receivesMoreThan(0, 1300ms));
    EXPECT_GE(turns, 10) << "the event loop runs meanwhile";
    writer.sendCommand("commit");
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 2);
    EXPECT_FALSE(receivesMoreThan(1));
}

TEST_P(CommitDetection, GrowthThatIsRolledBackIsReportedWhenTheWriterLetsGo)
{
    watch(immediately);
    writer.holdTransactionOpen();
    writer.sendCommand("rollback");
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 1);
    EXPECT_FALSE(receivesMoreThan(1));
}

TEST_P(CommitDetection, ACrashOfTheWriterEndsTheWait)
{
    watch(immediately);
    writer.holdTransactionOpen();
    writer.crash();
    EXPECT_TRUE(awaitEvents(1));
    EXPECT_FALSE(receivesMoreThan(1));
}

TEST_P(CommitDetection, ACheckpointThatCutsTheLogIsNoEvent)
{
    watch(immediately);
    writer.sendCommand("text message");
    ASSERT_TRUE(awaitEvents(1));
    writer.sendCommand("truncate");
    ASSERT_EQ(std::filesystem::file_size(log), 0U);
    EXPECT_FALSE(receivesMoreThan(1));

    writer.sendCommand("text message after the checkpoint");
    ASSERT_TRUE(awaitEvents(2));
    EXPECT_EQ(messagesSeen, 3);
}

TEST_P(CommitDetection, AMessageWithoutGrowthIsNoEvent)
{
    // A log that was moved into the store as a whole, but not cut, is written again from its
    // beginning.
    for (int message = 0; message < 10; ++message) {
        writer.sendCommand("text message");
    }
    writer.sendCommand("sql PRAGMA wal_checkpoint(RESTART)");
    watch(immediately);
    const auto before = std::filesystem::file_size(log);
    writer.sendCommand("text message");
    ASSERT_EQ(std::filesystem::file_size(log), before);
    EXPECT_FALSE(receivesMoreThan(0));
}

TEST_P(CommitDetection, IsReportedOnTheMainThreadWhenTheQueueIsTheMainOne)
{
    watch(mainQueue());
    writer.holdTransactionOpen();
    writer.sendCommand("commit");
    EXPECT_EQ(events, 0) << "the event loop has not turned yet";
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 2);
}

/// What does not depend on how the writer waits for its disk.
using CommitDetectionFullSync = CommitDetection;

INSTANTIATE_TEST_SUITE_P(
    Synchronous, CommitDetectionFullSync, testing::Values("full"), [](const auto& instance) {
        return instance.param;
    });

TEST_P(CommitDetectionFullSync, TheCancellingOfASourceThatWaitsIsNotHeldUp)
{
    watch(immediately);
    writer.holdTransactionOpen();
    EXPECT_FALSE(receivesMoreThan(0, 50ms));
    const auto start = steady_clock::now();
    source->cancel();
    EXPECT_LT(steady_clock::now() - start, 500ms);
    EXPECT_FALSE(receivesMoreThan(0, 1200ms));
}

/// A file that is called a log but belongs to no store.
class LogWithoutStore : public testing::Test
{
protected:
    LogWithoutStore()
    {
        writeFile(log, "log");
        opened = UniqueFd(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
    }
    void TearDown() override
    {
        if (source) {
            source->cancel();
        }
    }

    /// How long growth takes to be reported: the best of several, so that a busy machine does not
    /// count against it.
    [[nodiscard]] steady_clock::duration minDelay(int growths = 5)
    {
        source = makeFileSystemObjectSource(opened.get(), vnodeExtend, immediately);
        source->setEventHandler([this] { ++events; });
        source->resume();
        auto best = steady_clock::duration::max();
        for (int growth = 1; growth <= growths; ++growth) {
            const auto start = steady_clock::now();
            appendToFile(log, "more");
            EXPECT_TRUE(await([this, growth] { return events >= growth; }));
            best = std::min(best, steady_clock::now() - start);
        }
        return best;
    }

    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    UniqueFd opened;
    ImmediateQueue immediately;
    std::atomic<int> events = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(LogWithoutStore, IsReportedAtOnceWithoutASharedIndex)
{
    EXPECT_LT(minDelay(), 100ms);
}

TEST_F(LogWithoutStore, IsReportedAtOnceWhenNobodyHoldsTheLock)
{
    writeFile(index, "an index");
    EXPECT_LT(minDelay(), 100ms);
}

TEST_F(LogWithoutStore, IsReportedAtOnceWhenTheSharedIndexWasReplaced)
{
    writeFile(index, "an index");
    const ForeignLock foreign(index, 120);
    const auto replacement = folder.path() / "replacement";
    writeFile(replacement, "another index");
    std::filesystem::rename(replacement, index);
    EXPECT_LT(minDelay(), 100ms);
}

TEST_F(LogWithoutStore, IsAskedUnderTheNameThatTheFileHadWhenItWasOpened)
{
    // A log that is renamed after that is no longer its store's, but growth is still reported.
    source = makeFileSystemObjectSource(opened.get(), vnodeExtend, immediately);
    source->setEventHandler([this] { ++events; });
    source->resume();
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(log, renamed);
    appendToFile(renamed, "more");
    EXPECT_TRUE(await([this] { return events == 1; }));
}

} // namespace
} // namespace orlimo
