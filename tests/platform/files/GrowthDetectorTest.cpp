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
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// A log, its shared index in SQLite's WAL-index format, and the writer's lock. It starts with five
/// committed frames.
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

    void makeDetector()
    {
        // The descriptor that is given out next is the index's.
        indexDescriptor = ::dup(0);
        ::close(indexDescriptor);
        detector.emplace(opened.get(), log, clock.function());
    }

    /// Gives the log the length that it has with this number of frames.
    void write(int frames)
    {
        const auto frameSize = static_cast<std::uintmax_t>(24 + pageSize);
        const auto count = static_cast<std::uintmax_t>(frames);
        std::filesystem::resize_file(log, frames == 0 ? 0 : 32 + count * frameSize);
    }

    void overwrite() const
    {
        const UniqueFd writer(::open(log.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_EQ(::write(writer.get(), "abcdefghij", 10), 10);
    }

    /// What a commit leaves in the index: both copies of its header.
    void publish(int frames)
    {
        ++commits;
        store(0, frames);
        store(48, frames);
    }

    /// As the first writer does after a full checkpoint, and a checkpoint before it cuts the log.
    void restartLog()
    {
        ++salt;
        store(0, 0);
        store(48, 0);
    }

    /// A copy of the index's header at `offset`.
    void store(off_t offset, int frames) const
    {
        std::array<std::uint32_t, 12> header{
            3'007'000,
            0,
            commits,
            0,
            static_cast<std::uint32_t>(frames),
            10,
            0,
            0,
            htonl(salt),
            ~salt,
            0,
            0};
        const std::uint8_t initialized = 1;
        const auto storedPageSize = static_cast<std::uint16_t>(pageSize == 65'536 ? 1 : pageSize);
        std::memcpy(&header[3], &initialized, sizeof initialized);
        std::memcpy(reinterpret_cast<char*>(&header[3]) + 2, &storedPageSize, 2);
        const UniqueFd writer(::open(index.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_EQ(::pwrite(writer.get(), header.data(), sizeof header, offset), 48);
    }

    /// The index of a log that was never written.
    void blankIndex()
    {
        writeFile(index, std::string(32'768, '\0'));
        salt = 0;
        pageSize = 0;
        publish(0);
        makeDetector();
        pageSize = 4096;
        salt = 9;
    }

    void replaceIndex() const
    {
        const auto replacement = folder.path() / "replacement";
        std::filesystem::copy_file(index, replacement);
        std::filesystem::rename(replacement, index);
    }

    void expectCheck(bool isReported, bool isWaiting)
    {
        EXPECT_EQ(detector->check(), isReported);
        EXPECT_EQ(detector->isWaiting(), isWaiting);
    }

    /// Does what the words of `script` say; "write" and its like are followed by a number.
    void run(const std::string& script)
    {
        std::istringstream words(script);
        int number = 0;
        const auto next = [&] {
            words >> number;
            return number;
        };
        const std::map<std::string, std::function<void()>> actions{
            {"lock", [&] { writeLock.emplace(index, 120); }},
            {"unlock", [&] { writeLock.reset(); }},
            {"write", [&] { write(next()); }},
            {"publish", [&] { publish(next()); }},
            {"commit", [&] { write(next()), publish(number); }},
            {"publish-half", [&] { store(48, next()); }},
            {"restart", [&] { restartLog(); }},
            {"cut", [&] { write(0); }},
            {"overwrite", [&] { overwrite(); }},
            {"watch", [&] { makeDetector(); }},
            {"ns", [&] { clock.advance(std::chrono::nanoseconds(next())); }},
            {"ms", [&] { clock.advance(std::chrono::milliseconds(next())); }},
            {"page-size", [&] { pageSize = next(); }},
            {"blank-index", [&] { blankIndex(); }},
            {"replace-index", [&] { replaceIndex(); }},
            {"unknown-index", [&] { writeFile(index, "an index"); }},
            {"remove-index", [&] { std::filesystem::remove(index); }},
            {"close", [&] { opened = UniqueFd(); }},
            {"reopen", [&] { opened = UniqueFd(::open(log.c_str(), O_RDONLY | O_CLOEXEC)); }},
            {"close-index", [&] { EXPECT_EQ(::close(indexDescriptor), 0); }},
            {"nothing", [&] { expectCheck(false, false); }},
            {"waits", [&] { expectCheck(false, true); }},
            {"reported", [&] { expectCheck(true, false); }},
            {"reported-as-grown", [&] { EXPECT_TRUE(detector->check(true)); }},
            {"nothing-as-grown", [&] { EXPECT_FALSE(detector->check(true)); }},
            {"reported-and-waits", [&] { expectCheck(true, true); }},
        };
        int position = 0;
        for (std::string word; words >> word;) {
            SCOPED_TRACE("step " + std::to_string(++position) + ": " + word);
            actions.at(word)();
        }
    }

    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    int indexDescriptor = -1;
    int pageSize = 4096;
    std::uint32_t salt = 7;
    std::uint32_t commits = 0;
    UniqueFd opened;
    ManualClock clock;
    std::optional<ForeignLock> writeLock;
    std::optional<GrowthDetector> detector;
};

struct WalCase
{
    const char* name;
    const char* script;
};

class WalGrowthCase : public WalGrowth, public testing::WithParamInterface<WalCase>
{};

INSTANTIATE_TEST_SUITE_P(
    Of,
    WalGrowthCase,
    testing::Values(
        WalCase{
            "PlainFileIsReportedOnceForEachGrowth", // beyond 4 GiB too
            "remove-index watch nothing write 6 reported nothing write 1042468 reported nothing "
            "write 1042469 reported nothing"},
        WalCase{
            "PlainFileShrunkOrOverwrittenIsNotReported",
            "remove-index watch overwrite nothing write 3 nothing cut nothing write 1 reported"},
        WalCase{
            "PlainFileIsReportedWhenTheSystemReportsGrowth", // unless nothing is left of it
            "remove-index watch reported-as-grown write 3 reported-as-grown cut nothing-as-grown"},
        WalCase{"PlainFileOfUnknownSizeIsReported", "remove-index watch close reported"},
        WalCase{
            "CommitIsReportedOnceHoweverLongItTakes",
            "lock write 6 waits ms 999 waits ms 1 waits ms 3500 waits ms 3600000 waits "
            "write 8 waits publish 8 reported unlock nothing commit 9 commit 11 reported nothing"},
        WalCase{
            "CommitIsReportedWhileTheNextIsWritten",
            "lock commit 6 write 7 reported-and-waits ms 3600000 waits commit 9 reported"},
        WalCase{
            "RollbackIsReportedAtUnlockAndCommitInItsPlaceToo",
            "lock write 7 waits unlock reported nothing "
            "lock waits publish 6 reported unlock nothing "
            "lock waits publish 7 reported unlock nothing"},
        WalCase{
            "CommitBegunBeforeTheWatchIsReported", "lock write 7 watch waits publish 7 reported"},
        WalCase{
            "RestartedLogGrowsFromItsOldEnd",
            "restart lock waits publish 2 waits unlock nothing lock nothing publish 4 nothing "
            "unlock nothing lock nothing publish 5 nothing unlock nothing commit 6 reported"},
        WalCase{
            "RestartedLogGrowsFromItsOldEndAlsoWhenCheckedLate",
            "restart publish 2 publish 4 nothing publish 5 nothing"},
        WalCase{"TruncationIsNotReported", "restart cut nothing commit 2 reported"},
        WalCase{
            "CommitCutOffBeforeTheCheckIsReported",
            "commit 7 restart cut reported nothing commit 2 reported"},
        WalCase{
            "CommitCutOffWhileItWaitedIsReported",
            "lock write 7 waits publish 7 restart cut reported"},
        WalCase{
            "CommitRestartedWhileItWaitedIsReported",
            "lock write 7 waits publish 7 restart waits publish 2 unlock reported publish 7 "
            "nothing"},
        WalCase{
            "CommitBeforeAnUnnoticedRestartIsReported",
            "commit 7 restart publish 2 reported publish 3 nothing publish 6 nothing "
            "publish 7 nothing commit 8 reported"},
        WalCase{
            "LogCutToALimitGrowsFromIt", // which the first commit of the new log does
            "lock restart waits write 4 publish 1 unlock reported "
            "publish 2 nothing publish 4 nothing commit 5 reported"},
        WalCase{
            "LogCutToALimitGrowsFromItUnderASystemThatReportsGrowthAlone",
            "commit 12 reported restart write 8 publish 1 publish 8 commit 9 reported-as-grown"},
        WalCase{
            "LogCutToALimitGrowsFromTheEndOfALongFirstCommit",
            "commit 30 reported restart write 14 publish 14 commit 15 reported-as-grown nothing"},
        WalCase{
            "CommitBetweenTwoTruncationsIsReported",
            "restart cut nothing commit 2 restart cut reported restart nothing"},
        WalCase{
            "CommitToTheOldLengthBeforeAnotherRestartIsReported",
            "restart cut commit 5 restart publish 2 reported publish 3 nothing"},
        WalCase{
            "FirstCommitOfAllIsReported", "cut blank-index lock write 2 waits publish 2 reported"},
        WalCase{
            "LargestPagesAreCounted",
            "page-size 65536 restart commit 5 watch lock write 6 waits publish 6 reported"},
        WalCase{"ReplacedIndexIsRead", "replace-index lock write 6 waits publish 6 reported"},
        WalCase{"LockOfTheReplacedIndexIsIgnored", "lock replace-index write 6 reported nothing"},
        WalCase{
            "HalfPublishedIndexIsWaitedForASecond",
            "write 6 publish-half 6 waits publish 6 reported "
            "write 7 publish-half 7 waits ns 999999999 waits ns 1 reported"},
        WalCase{"UnknownSizeWaitsForTheLock", "lock close waits unlock reported"},
        WalCase{
            "CommitReportedWithUnknownSizeIsNotReportedAgainBeforeTheNext",
            "commit 6 close reported reopen nothing lock write 7 waits publish 7 reported"},
        WalCase{
            "LockThatCannotBeQueriedIsWaitedForASecond",
            "close-index write 6 waits ms 999 waits ms 1 reported nothing"},
        WalCase{
            "UnknownIndexIsIgnoredWhileTheLockIsFree",
            "unknown-index watch write 6 reported remove-index write 7 reported"},
        WalCase{
            "UnknownIndexIsWaitedForASecondWhileTheLockIsHeld",
            "unknown-index watch lock write 6 waits ms 600 waits ms 399 waits ms 1 reported "
            "ms 3600000 write 7 waits ms 999 waits ms 1 reported write 8 waits unlock reported"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(WalGrowthCase, IsDetected)
{
    run(GetParam().script);
}

TEST_F(WalGrowth, ClosedFileThrowsTheSystemsError)
{
    try {
        const GrowthDetector none(-1, log, clock.function());
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(EBADF, std::generic_category()));
    }
}

TEST_F(WalGrowth, MissedTruncationIsReportedWithItsCommit)
{
    // How many frames the log of five has when it is checked again.
    for (const std::string frames : {"1", "4", "5", "6", "20"}) {
        SCOPED_TRACE(frames);
        run("commit 5 watch restart cut commit " + frames + " reported nothing");
        run("commit 5 watch lock restart waits cut unlock commit " + frames + " reported");
        run("commit 5 watch restart cut lock write " + frames + " waits ms 5000 waits publish " +
            frames + " reported unlock");
    }
}

TEST_F(WalGrowth, CutOffDuringTheCheckIsReportedOnce)
{
    bool isCut = false;
    detector.emplace(opened.get(), log, [&] {
        if (!std::exchange(isCut, true)) {
            publish(7);
            writeLock.reset();
            restartLog();
            write(0);
        }
        return clock.now();
    });
    writeLock.emplace(index, 120);
    write(7);
    expectCheck(true, false);
    ASSERT_TRUE(isCut);
    expectCheck(false, false);
}

TEST_F(WalGrowth, IsPolledInProportionToTheWait)
{
    run("lock write 6 waits");
    std::chrono::nanoseconds waited{};
    const auto intervalAfter = [&](std::chrono::nanoseconds span) {
        clock.advance(span - waited);
        waited = span;
        return detector->pollInterval();
    };
    EXPECT_EQ(intervalAfter(0ms), 100us);
    EXPECT_EQ(intervalAfter(800us), 100us);
    EXPECT_EQ(intervalAfter(1600us), 200us);
    EXPECT_EQ(intervalAfter(40ms), 5ms);
    EXPECT_EQ(intervalAfter(500ms), 5ms);
    EXPECT_EQ(intervalAfter(3s), 30ms);
    EXPECT_EQ(intervalAfter(24h), 1s);
}

TEST_F(WalGrowth, EveryOtherHeaderIsUnknown)
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
