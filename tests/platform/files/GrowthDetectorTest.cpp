#include "platform/files/GrowthDetector.h"

#include "platform/files/UniqueFd.h"
#include "tests/platform/files/ForeignLock.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

// A file that belongs to no store

class PlainFileGrowth : public testing::Test
{
protected:
    PlainFileGrowth()
    {
        writeFile(file, "0123456789");
        opened = UniqueFd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
        detector.emplace(opened.get(), file, clock.function());
    }

    void resize(std::uintmax_t size) { std::filesystem::resize_file(file, size); }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "file";
    UniqueFd opened;
    ManualClock clock;
    std::optional<GrowthDetector> detector;
};

TEST_F(PlainFileGrowth, IsReportedOnce)
{
    EXPECT_FALSE(detector->check()) << "it was there before";
    appendToFile(file, "x");
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
    EXPECT_FALSE(detector->check());
    appendToFile(file, "x");
    appendToFile(file, "y");
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->check());
}

TEST_F(PlainFileGrowth, IsNeitherAShrinkNorOverwriting)
{
    const UniqueFd writer(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_EQ(::write(writer.get(), "abcdefghij", 10), 10);
    EXPECT_FALSE(detector->check());
    resize(5);
    EXPECT_FALSE(detector->check());
    resize(0);
    EXPECT_FALSE(detector->check());
    appendToFile(file, "x");
    EXPECT_TRUE(detector->check()) << "it is longer than it was after the shrink";
}

TEST_F(PlainFileGrowth, CountsSizesBeyondFourGigabytes)
{
    resize(0x1'0000'0000);
    EXPECT_TRUE(detector->check());
    resize(0x1'0000'0001);
    EXPECT_TRUE(detector->check());
    resize(1);
    EXPECT_FALSE(detector->check());
    resize(0x2'0000'0000);
    EXPECT_TRUE(detector->check());
}

TEST_F(PlainFileGrowth, IsThatOfTheOpenFileAndNotOfItsName)
{
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    writeFile(file, "a longer file in the place of the first one");
    EXPECT_FALSE(detector->check());
    appendToFile(renamed, "x");
    EXPECT_TRUE(detector->check());
}

TEST_F(PlainFileGrowth, IsBelievedWhenTheSystemReportsIt)
{
    EXPECT_TRUE(detector->check(true)) << "cut and grown to its old size";
    resize(5);
    EXPECT_TRUE(detector->check(true)) << "cut and grown to less";
    resize(0);
    EXPECT_FALSE(detector->check(true)) << "grown and cut: nothing is left of it";
}

TEST_F(PlainFileGrowth, IsAssumedWhereTheSizeCannotBeAsked)
{
    opened = UniqueFd();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(PlainFileGrowth, CannotBeDetectedForWhatIsNotOpen)
{
    try {
        const GrowthDetector none(-1, file, clock.function());
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(EBADF, std::generic_category()));
    }
}

TEST_F(PlainFileGrowth, DoesNotWaitForALockBesideIt)
{
    writeFile(folder.path() / "file-shm", "an index");
    const ForeignLock writer(folder.path() / "file-shm", 120);
    appendToFile(file, "x");
    EXPECT_TRUE(detector->check());
}

// The log of a store

/// A log and its shared index, made of what SQLite's WAL-index format says, and the writer's lock.
class WalGrowth : public testing::Test
{
protected:
    WalGrowth()
    {
        writeFile(log, "");
        writeFile(index, std::string(32'768, '\0'));
        opened = UniqueFd(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
        write(5);
        publish(5);
        makeDetector();
    }

    void makeDetector() { detector.emplace(opened.get(), log, clock.function()); }

    /// Gives the log the length that it has with this number of frames.
    void write(int frames)
    {
        const int size = frames == 0 ? 0 : 32 + frames * (24 + pageSize);
        std::filesystem::resize_file(log, static_cast<std::uintmax_t>(size));
    }
    void cut() { write(0); }

    /// What a commit leaves in the index: both copies of its header.
    void publish(std::uint32_t frames)
    {
        ++commits;
        storeBoth(frames);
    }

    void storeBoth(std::uint32_t frames) const
    {
        store(0, frames);
        store(48, frames);
    }

    /// As the next writer does when everything is in the store, and a checkpoint that is about to
    /// cut the log.
    void restartLog()
    {
        ++salt;
        storeBoth(0);
    }

    /// A copy of the index's header at `offset`.
    void store(off_t offset, std::uint32_t frames) const
    {
        std::array<std::uint32_t, 12> header{
            3'007'000, 0, commits, 0, frames, 10, 0, 0, htonl(salt), ~salt, 0, 0};
        const std::uint8_t initialized = 1;
        const auto storedPageSize = static_cast<std::uint16_t>(pageSize == 65'536 ? 1 : pageSize);
        std::memcpy(&header[3], &initialized, sizeof initialized);
        std::memcpy(reinterpret_cast<char*>(&header[3]) + 2, &storedPageSize, 2);
        const UniqueFd writer(::open(index.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_EQ(::pwrite(writer.get(), header.data(), sizeof header, offset), 48);
    }

    void takeWriteLock() { writeLock.emplace(index, 120); }
    void releaseWriteLock() { writeLock.reset(); }

    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    int pageSize = 4096;
    std::uint32_t salt = 7;
    std::uint32_t commits = 0;
    UniqueFd opened;
    ManualClock clock;
    std::optional<ForeignLock> writeLock;
    std::optional<GrowthDetector> detector;
};

TEST_F(WalGrowth, IsReportedWhenTheCommitCanBeRead)
{
    takeWriteLock();
    write(6);
    EXPECT_FALSE(detector->check());
    write(8);
    EXPECT_FALSE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    publish(8);
    EXPECT_TRUE(detector->check()) << "also before the writer has let go";
    EXPECT_FALSE(detector->isWaiting());
    releaseWriteLock();
    EXPECT_FALSE(detector->check());
}

TEST_F(WalGrowth, WaitsHoweverLongTheWriterTakes)
{
    takeWriteLock();
    write(6);
    for (const auto passed : {0ms, 999ms, 1ms, 3500ms, 3'600'000ms}) {
        clock.advance(passed);
        EXPECT_FALSE(detector->check()) << passed.count();
        EXPECT_TRUE(detector->isWaiting()) << passed.count();
    }
    publish(6);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsReportedForOneCommitWhileTheNextIsWritten)
{
    takeWriteLock();
    write(6);
    publish(6);
    write(7);
    EXPECT_TRUE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    clock.advance(1h);
    EXPECT_FALSE(detector->check());
    write(9);
    publish(9);
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(WalGrowth, OfSeveralCommitsIsReportedOnce)
{
    write(7);
    publish(7);
    write(9);
    publish(9);
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->check());
}

TEST_F(WalGrowth, ThatAWriterGivesUpIsReportedWhenItLetsGo)
{
    takeWriteLock();
    write(7);
    EXPECT_FALSE(detector->check());
    releaseWriteLock();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->check());

    for (const std::uint32_t frames : {6U, 7U}) {
        takeWriteLock();
        EXPECT_FALSE(detector->check());
        EXPECT_TRUE(detector->isWaiting()) << "nothing reports what is only published";
        publish(frames);
        EXPECT_TRUE(detector->check()) << "the commit in the place of what was given up is new";
        releaseWriteLock();
        EXPECT_FALSE(detector->check());
        EXPECT_FALSE(detector->isWaiting());
    }
}

TEST_F(WalGrowth, IsReportedWhenItsCommitWasBegunBeforeTheWatch)
{
    takeWriteLock();
    write(7);
    makeDetector();
    EXPECT_FALSE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    publish(7);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsNotWhatIsWrittenFromTheBeginning)
{
    restartLog();
    for (const std::uint32_t frames : {2U, 4U, 5U}) {
        takeWriteLock();
        EXPECT_FALSE(detector->check()) << frames;
        publish(frames);
        EXPECT_FALSE(detector->check()) << frames;
        releaseWriteLock();
        EXPECT_FALSE(detector->check()) << frames;
        EXPECT_FALSE(detector->isWaiting());
    }
    write(6);
    publish(6);
    EXPECT_TRUE(detector->check()) << "beyond its old end it grows";
}

TEST_F(WalGrowth, IsNotWhatIsWrittenFromTheBeginningAlsoWhereTheLookComesLate)
{
    restartLog();
    publish(4);
    EXPECT_FALSE(detector->check());
    publish(5);
    EXPECT_FALSE(detector->check());
}

TEST_F(WalGrowth, IsNotACut)
{
    restartLog();
    cut();
    EXPECT_FALSE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
    write(2);
    publish(2);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsReportedAlsoWhenItWasCutOffBeforeTheLook)
{
    write(7);
    publish(7);
    restartLog();
    cut();
    EXPECT_TRUE(detector->check()) << "its commit can be read from the store";
    EXPECT_FALSE(detector->isWaiting());
    EXPECT_FALSE(detector->check());
    write(2);
    publish(2);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsReportedAlsoWhenItWasCutOffWhileItWaited)
{
    takeWriteLock();
    write(7);
    EXPECT_FALSE(detector->check());
    publish(7);
    restartLog();
    cut();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(WalGrowth, IsReportedOnceWhenItIsCutOffDuringTheLook)
{
    bool isCut = false;
    detector.emplace(opened.get(), log, [&] {
        if (!std::exchange(isCut, true)) {
            publish(7);
            releaseWriteLock();
            restartLog();
            cut();
        }
        return clock.now();
    });
    takeWriteLock();
    write(7);
    EXPECT_TRUE(detector->check());
    ASSERT_TRUE(isCut);
    EXPECT_FALSE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(WalGrowth, IsReportedAlsoWhenTheLogWasBegunAnewWhileItWaited)
{
    takeWriteLock();
    write(7);
    EXPECT_FALSE(detector->check());
    publish(7);
    restartLog();
    EXPECT_FALSE(detector->check()) << "it may be about to be cut";
    EXPECT_TRUE(detector->isWaiting());
    publish(2);
    releaseWriteLock();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
    publish(7);
    EXPECT_FALSE(detector->check()) << "it is written over";
}

TEST_F(WalGrowth, IsNotWhatIsWrittenFromTheBeginningBehindAnUnnoticedCommit)
{
    write(7);
    publish(7);
    restartLog();
    publish(2);
    EXPECT_TRUE(detector->check());
    for (const std::uint32_t frames : {3U, 6U, 7U}) {
        publish(frames);
        EXPECT_FALSE(detector->check()) << frames;
        EXPECT_FALSE(detector->isWaiting()) << frames;
    }
    write(8);
    publish(8);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsNotWhatIsWrittenIntoALogThatWasCutToALimit)
{
    // The first commit of the new log cuts what is beyond the limit.
    takeWriteLock();
    restartLog();
    EXPECT_FALSE(detector->check());
    write(4);
    publish(1);
    releaseWriteLock();
    EXPECT_TRUE(detector->check()) << "it may have been cut to nothing";
    for (const std::uint32_t frames : {2U, 4U}) {
        publish(frames);
        EXPECT_FALSE(detector->check()) << frames;
    }
    write(5);
    publish(5);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsReportedAlsoWhenTheLogWasEmptyBeforeAndAfterIt)
{
    restartLog();
    cut();
    EXPECT_FALSE(detector->check());
    write(2);
    publish(2);
    restartLog();
    cut();
    EXPECT_TRUE(detector->check());
    restartLog();
    EXPECT_FALSE(detector->check());
}

TEST_F(WalGrowth, IsReportedAlsoWhenTheLogThatHasItsOldLengthAgainIsWrittenOver)
{
    restartLog();
    cut();
    write(5);
    publish(5);
    restartLog();
    publish(2);
    EXPECT_TRUE(detector->check());
    publish(3);
    EXPECT_FALSE(detector->check());
}

TEST_F(WalGrowth, IsNotWhatIsWrittenFromTheBeginningInSeveralCommits)
{
    restartLog();
    publish(2);
    publish(4);
    EXPECT_FALSE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

/// How many frames a log of five has after it was cut and written again, unnoticed.
class GrowthAfterMissedTruncation : public WalGrowth, public testing::WithParamInterface<int>
{};

INSTANTIATE_TEST_SUITE_P(Frames, GrowthAfterMissedTruncation, testing::Values(1, 4, 5, 6, 20));

TEST_P(GrowthAfterMissedTruncation, IsReported)
{
    restartLog();
    cut();
    write(GetParam());
    publish(static_cast<std::uint32_t>(GetParam()));
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
    EXPECT_FALSE(detector->check());
}

TEST_P(GrowthAfterMissedTruncation, IsReportedAlsoAfterALookRightBeforeTheCut)
{
    takeWriteLock();
    restartLog();
    EXPECT_FALSE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    cut();
    releaseWriteLock();
    write(GetParam());
    publish(static_cast<std::uint32_t>(GetParam()));
    EXPECT_TRUE(detector->check());
}

TEST_P(GrowthAfterMissedTruncation, WaitsForItsCommit)
{
    restartLog();
    cut();
    takeWriteLock();
    write(GetParam());
    const bool reported = detector->check();
    clock.advance(5s);
    EXPECT_FALSE(reported || detector->check());
    publish(static_cast<std::uint32_t>(GetParam()));
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, OfTheFirstCommitOfAll)
{
    cut();
    writeFile(index, std::string(32'768, '\0'));
    salt = 0;
    pageSize = 0;
    publish(0);
    makeDetector();
    pageSize = 4096;
    salt = 9;
    takeWriteLock();
    write(2);
    EXPECT_FALSE(detector->check());
    publish(2);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, WithTheLargestPages)
{
    pageSize = 65'536;
    restartLog();
    write(5);
    publish(5);
    makeDetector();
    takeWriteLock();
    write(6);
    EXPECT_FALSE(detector->check());
    publish(6);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, IsJudgedByTheIndexThatIsThereNow)
{
    const auto replacement = folder.path() / "replacement";
    std::filesystem::copy_file(index, replacement);
    std::filesystem::rename(replacement, index);
    takeWriteLock();
    write(6);
    EXPECT_FALSE(detector->check());
    publish(6);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, WaitsUntilTheIndexIsPublishedWhole)
{
    write(6);
    store(48, 6); // the writer is between the two copies
    EXPECT_FALSE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    store(0, 6);
    EXPECT_TRUE(detector->check());
}

TEST_F(WalGrowth, WaitsForASecondForAnIndexThatStaysHalfPublished)
{
    write(6);
    store(48, 6);
    EXPECT_FALSE(detector->check());
    clock.advance(1s - 1ns);
    EXPECT_FALSE(detector->check());
    clock.advance(1ns);
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(WalGrowth, OfUnknownSizeWaitsForTheWriter)
{
    takeWriteLock();
    opened = UniqueFd();
    EXPECT_FALSE(detector->check());
    EXPECT_TRUE(detector->isWaiting());
    releaseWriteLock();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(WalGrowth, IsLookedAtAgainInPausesInProportionToTheWait)
{
    takeWriteLock();
    write(6);
    ASSERT_FALSE(detector->check());
    std::chrono::nanoseconds waited{};
    const auto pauseAfter = [&](std::chrono::nanoseconds span) {
        clock.advance(span - waited);
        waited = span;
        return detector->pollInterval();
    };
    EXPECT_EQ(pauseAfter(0ms), 100us);
    EXPECT_EQ(pauseAfter(800us), 100us);
    EXPECT_EQ(pauseAfter(1600us), 200us);
    EXPECT_EQ(pauseAfter(40ms), 5ms);
    EXPECT_EQ(pauseAfter(500ms), 5ms);
    EXPECT_EQ(pauseAfter(3s), 30ms);
    EXPECT_EQ(pauseAfter(24h), 1s);
}

// A log whose index says nothing that is understood

class GrowthWithUnknownWalIndex : public WalGrowth
{
protected:
    GrowthWithUnknownWalIndex()
    {
        writeFile(index, "an index");
        makeDetector();
    }
};

TEST_F(GrowthWithUnknownWalIndex, IsReportedAtOnceWhileNobodyWrites)
{
    write(6);
    EXPECT_TRUE(detector->check());
    std::filesystem::remove(index);
    write(7);
    EXPECT_TRUE(detector->check());
}

TEST_F(GrowthWithUnknownWalIndex, WaitsForTheWriter)
{
    takeWriteLock();
    write(6);
    EXPECT_FALSE(detector->check());
    clock.advance(999ms);
    EXPECT_FALSE(detector->check());
    releaseWriteLock();
    EXPECT_TRUE(detector->check());
    EXPECT_FALSE(detector->isWaiting());
}

TEST_F(GrowthWithUnknownWalIndex, WaitsForASecondFromItsBeginning)
{
    takeWriteLock();
    for (int frames = 6; frames <= 7; ++frames) {
        write(frames);
        EXPECT_FALSE(detector->check());
        clock.advance(600ms);
        EXPECT_FALSE(detector->check());
        clock.advance(400ms);
        EXPECT_TRUE(detector->check());
        EXPECT_FALSE(detector->isWaiting());
        clock.advance(1h);
    }
}

TEST_F(GrowthWithUnknownWalIndex, IsSuchBesideEveryHeaderOfAnotherFormat)
{
    struct Change
    {
        off_t offset;
        char byte;
    };
    for (const Change change : {Change{0, 1}, Change{12, 0}, Change{14, 3}, Change{15, 3}}) {
        writeFile(index, std::string(32'768, '\0'));
        publish(6);
        const UniqueFd writer(::open(index.c_str(), O_WRONLY | O_CLOEXEC));
        for (const off_t copy : {0, 48}) {
            ASSERT_EQ(::pwrite(writer.get(), &change.byte, 1, copy + change.offset), 1);
        }
        WalIndex changed(log);
        EXPECT_EQ(changed.read().state, WalIndex::State::absent) << change.offset;
    }
}

} // namespace
} // namespace orlimo
