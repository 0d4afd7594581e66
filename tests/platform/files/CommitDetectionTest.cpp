#include "tests/platform/files/CommitDetection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

INSTANTIATE_TEST_SUITE_P(
    Synchronous,
    CommitDetection,
    testing::Values("full", "normal", "off"),
    [](const auto& instance) { return instance.param; });

TEST_P(CommitDetection, EachCommitOfFewOrManyFramesIsOneEventAtWhichItCanBeRead)
{
    writer.sendCommand("sql CREATE TABLE load(bytes)");
    watch();
    for (int commit = 1; commit <= 60; ++commit) {
        const auto before = std::filesystem::file_size(log);
        if (commit % 3 == 0) {
            writer.sendCommand("begin");
            writer.sendCommand("text message");
            writer.sendCommand("sql INSERT INTO load VALUES (randomblob(400000))");
            writer.sendCommand("commit");
            ASSERT_GT(std::filesystem::file_size(log), before + 400'000);
        } else {
            writer.sendCommand("text message");
        }
        ASSERT_TRUE(awaitEvents(commit));
        ASSERT_EQ(messagesSeen, 1 + commit);
    }
    EXPECT_FALSE(receivesMoreThan(60));
    EXPECT_EQ(events, 60);
}

TEST_P(CommitDetection, LastOfManyCommitsIsNeverMissed)
{
    watch();
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
    watch();
    const auto before = std::filesystem::file_size(log);
    writer.holdTransactionOpen();
    ASSERT_GT(std::filesystem::file_size(log), before);
    EXPECT_FALSE(receivesMoreThan(0, 300ms));
    writer.sendCommand("commit");
    ASSERT_TRUE(awaitEvents(1));
    EXPECT_EQ(messagesSeen, 2);
    EXPECT_FALSE(receivesMoreThan(1));
}

TEST_P(CommitDetection, GrowthThatIsGivenUpIsReportedWhenTheLockIsReleased)
{
    watch();
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
    watch();
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
    watch();
    const auto before = std::filesystem::file_size(log);
    writer.sendCommand("text message");
    ASSERT_EQ(std::filesystem::file_size(log), before);
    EXPECT_FALSE(receivesMoreThan(0));
}

TEST_P(CommitDetection, CancellationDoesNotWaitForTheWriter)
{
    watch();
    writer.holdTransactionOpen();
    EXPECT_FALSE(receivesMoreThan(0, 50ms));
    const auto start = steady_clock::now();
    source->cancel();
    EXPECT_LT(steady_clock::now() - start, 500ms);
    writer.sendCommand("commit");
    EXPECT_FALSE(receivesMoreThan(0));
}

} // namespace
} // namespace orlimo
