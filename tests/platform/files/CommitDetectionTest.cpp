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
#include <optional>
#include <string>

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

TEST_P(CommitDetection, CommitOfManyFramesIsOneEvent)
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

TEST_P(CommitDetection, LastOfManyCommitsIsNeverMissed)
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
    int timeouts = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&timeouts] { ++timeouts; });
    timer.start(10ms);
    const auto before = std::filesystem::file_size(log);
    writer.holdTransactionOpen();
    ASSERT_GT(std::filesystem::file_size(log), before);
    EXPECT_FALSE(receivesMoreThan(0, 300ms));
    EXPECT_GE(timeouts, 10) << "the event loop runs meanwhile";
    writer.sendCommand("commit");
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 2);
    EXPECT_FALSE(receivesMoreThan(1));
}

TEST_P(CommitDetection, GrowthThatIsGivenUpIsReportedWhenTheLockIsReleased)
{
    watch(immediately);
    writer.holdTransactionOpen();
    writer.sendCommand("rollback");
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 1);
    EXPECT_FALSE(receivesMoreThan(1));
    writer.holdTransactionOpen();
    writer.sendCommand("sql INSERT INTO message (guid, text) VALUES (1, hex(randomblob(90000)))");
    writer.sendCommand("spill");
    writer.crash();
    EXPECT_TRUE(awaitEvents(2));
    EXPECT_FALSE(receivesMoreThan(2));
}

TEST_P(CommitDetection, TruncatingCheckpointIsNoEvent)
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

TEST_P(CommitDetection, CommitWithoutGrowthIsNoEvent)
{
    // After a full checkpoint the log is written again from its beginning.
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

TEST_P(CommitDetection, HandlerRunsFromTheMainQueue)
{
    watch(mainQueue());
    writer.holdTransactionOpen();
    writer.sendCommand("commit");
    EXPECT_EQ(events, 0) << "the event loop has not run yet";
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 2);
}

TEST_P(CommitDetection, CancellationDoesNotWaitForTheWriter)
{
    watch(immediately);
    writer.holdTransactionOpen();
    EXPECT_FALSE(receivesMoreThan(0, 50ms));
    const auto start = steady_clock::now();
    source->cancel();
    EXPECT_LT(steady_clock::now() - start, 500ms);
    writer.sendCommand("commit");
    EXPECT_FALSE(receivesMoreThan(0));
}

/// What lies beside a file that is named like a log but belongs to no store.
enum class Beside {
    nothing,
    unlockedIndex,
    replacedIndex,
};

class LogWithoutStore : public testing::TestWithParam<Beside>
{};

INSTANTIATE_TEST_SUITE_P(
    Beside,
    LogWithoutStore,
    testing::Values(Beside::nothing, Beside::unlockedIndex, Beside::replacedIndex));

TEST_P(LogWithoutStore, GrowthIsReportedAtOnce)
{
    const TemporaryFolder folder;
    const auto log = folder.path() / "store-wal";
    const auto index = folder.path() / "store-shm";
    writeFile(log, "log");
    std::optional<ForeignLock> lock;
    if (GetParam() != Beside::nothing) {
        writeFile(index, "an index");
    }
    if (GetParam() == Beside::replacedIndex) {
        lock.emplace(index, 120);
        writeFile(folder.path() / "replacement", "another index");
        std::filesystem::rename(folder.path() / "replacement", index);
    }
    const UniqueFd opened(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
    ImmediateQueue immediately;
    std::atomic<int> events = 0;
    const auto source = makeFileSystemObjectSource(opened.get(), vnodeExtend, immediately);
    source->setEventHandler([&events] { ++events; });
    source->resume();
    // The best of several, so that a busy machine does not count against it.
    auto best = steady_clock::duration::max();
    for (int growth = 1; growth <= 5; ++growth) {
        const auto start = steady_clock::now();
        appendToFile(log, "more");
        EXPECT_TRUE(await([&] { return events >= growth; }));
        best = std::min(best, steady_clock::now() - start);
    }
    EXPECT_LT(best, 100ms);
    source->cancel();
}

} // namespace
} // namespace orlimo
