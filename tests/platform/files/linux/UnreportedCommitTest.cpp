#include "tests/platform/files/CommitDetection.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <chrono>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// Commits that the shared index shows and inotify does not.
using UnreportedCommit = CommitDetection;

INSTANTIATE_TEST_SUITE_P(
    Synchronous,
    UnreportedCommit,
    testing::Values("full", "normal", "off"),
    [](const auto& instance) { return instance.param; });

TEST_P(UnreportedCommit, MessageRightBesideATruncationIsReported)
{
    watch();
    const std::string truncate = "PRAGMA wal_checkpoint(TRUNCATE);";
    for (int message = 1; message <= 80; ++message) {
        const std::string insert =
            "INSERT INTO message (guid, text, date) VALUES (hex(randomblob(9)), 'x', " +
            std::to_string(message) + ");";
        writer.sendCommand("sql " + (message <= 40 ? truncate + insert : insert + truncate));
        ASSERT_TRUE(await([this, message] { return messagesSeen == 1 + message; })) << message;
        if (message <= 40) {
            // The event is counted after what it lets be seen.
            ASSERT_TRUE(awaitEvents(message));
            EXPECT_EQ(events, message);
        }
    }
    EXPECT_FALSE(receivesMoreThan(80));
}

TEST_P(UnreportedCommit, MessagesInPlaceOfRolledBackFramesAreReported)
{
    writer.sendCommand("sql CREATE TABLE load(bytes)");
    watch();
    writer.sendCommand("begin");
    writer.sendCommand("sql INSERT INTO load VALUES (randomblob(400000))");
    writer.sendCommand("spill");
    writer.sendCommand("rollback");
    ASSERT_TRUE(awaitEvents(1));
    const auto size = std::filesystem::file_size(log);
    for (int message = 1; message <= 10; ++message) {
        writer.sendCommand("text message");
        ASSERT_TRUE(await([this, message] { return messagesSeen == 1 + message; })) << message;
    }
    ASSERT_EQ(std::filesystem::file_size(log), size);
    EXPECT_FALSE(receivesMoreThan(11));
}

std::map<std::string, std::optional<std::string>> slowDisk(const std::filesystem::path& delay)
{
    auto environment = preloadEnvironment({ORLIMO_SLOW_DISK});
    environment["ORLIMO_SLOW_DISK"] = delay;
    return environment;
}

/// A store on a disk that takes longer than a second for each commit.
class CommitOnASlowDisk : private TemporaryFolder, public CommitDetection
{
protected:
    CommitOnASlowDisk()
        : CommitDetection(slowDisk(path() / "delay"))
    {
        writeFile(path() / "delay", "1300");
    }
};

INSTANTIATE_TEST_SUITE_P(Synchronous, CommitOnASlowDisk, testing::Values("full"));

TEST_P(CommitOnASlowDisk, IsOneEventAtWhichItCanBeRead)
{
    watch();
    for (int commit = 1; commit <= 2; ++commit) {
        const auto start = steady_clock::now();
        writer.sendCommand("text message");
        ASSERT_GE(steady_clock::now() - start, 1300ms) << "the disk is not slow";
        ASSERT_TRUE(awaitEvents(commit));
        EXPECT_EQ(messagesSeen, 1 + commit);
        EXPECT_EQ(events, commit);
    }
}

} // namespace
} // namespace orlimo
