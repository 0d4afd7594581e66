#include "platform/files/WalIndex.h"

#include "tests/platform/files/ForeignLock.h"
#include "tests/platform/files/WriterProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// Where SQLite's locks are in the shared index: the writer's first, then the checkpointer's, that
/// of recovery, and those of the readers; the one behind them says that somebody uses the file.
constexpr off_t firstLockByte = 120;
constexpr off_t numberOfLockBytes = 9;

bool isWriteLockHeld(WalIndex& index)
{
    return index.writeLock() == WalIndex::Lock::held;
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
}

/// A connection of this process's own, which reads or writes beside the lock under test.
class SameProcessConnection
{
public:
    explicit SameProcessConnection(const std::filesystem::path& store)
    {
        EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK);
    }
    SameProcessConnection(const SameProcessConnection&) = delete;
    SameProcessConnection& operator=(const SameProcessConnection&) = delete;
    ~SameProcessConnection() { sqlite3_close(connection); }

    void run(const std::string& sql)
    {
        EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(connection);
    }

private:
    sqlite3* connection = nullptr;
};

/// The lock of a real store that another process writes.
class WalIndexTest : public testing::Test
{
protected:
    TemporaryFolder folder;
    std::filesystem::path store = folder.path() / "chat.db";
    std::filesystem::path index = folder.path() / "chat.db-shm";
    WriterProcess writer{store};
    WalIndex walIndex{folder.path() / "chat.db-wal"};
};

TEST_F(WalIndexTest, WriteLockIsFreeWhileNobodyWrites)
{
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    writer.sendCommand("text a message");
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, WriteLockIsHeldFromTheFirstFrameToTheCommit)
{
    writer.holdTransactionOpen();
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    EXPECT_EQ(visibleMessages(store), 1);
    writer.sendCommand("commit");
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    EXPECT_EQ(visibleMessages(store), 2);
}

TEST_F(WalIndexTest, WriteLockIsFreeAfterARollback)
{
    writer.holdTransactionOpen();
    writer.sendCommand("rollback");
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, WriteLockIsFreeWhenTheWriterHasCrashed)
{
    writer.holdTransactionOpen();
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    writer.crash();
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, AskingDoesNotHinderTheWriter)
{
    for (int message = 0; message < 20; ++message) {
        EXPECT_FALSE(isWriteLockHeld(walIndex));
        writer.holdTransactionOpen();
        EXPECT_TRUE(isWriteLockHeld(walIndex));
        writer.sendCommand("commit");
    }
    writer.sendCommand("truncate");
    EXPECT_FALSE(isLockedForOtherProcesses(index, firstLockByte, numberOfLockBytes - 1));
}

TEST_F(WalIndexTest, ReadersDoNotHoldTheWriteLock)
{
    WriterProcess reader(folder.path() / "chat.db");
    reader.sendCommand("sql BEGIN; SELECT count(*) FROM message");
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, WriteLockOfThisProcessDoesNotCount)
{
    SameProcessConnection own(store);
    own.run("BEGIN IMMEDIATE; DELETE FROM message");
    EXPECT_TRUE(isLockedForOtherProcesses(index, firstLockByte, 1));
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    own.run("ROLLBACK");
}

TEST_F(WalIndexTest, AskingDoesNotDropThisProcessesOwnLocks)
{
    SameProcessConnection own(store);
    own.run("BEGIN; SELECT count(*) FROM message");
    writer.sendCommand("text after the reader has begun");
    ASSERT_TRUE(isLockedForOtherProcesses(index, firstLockByte + 3, 5)) << "the reader's lock";
    for (int time = 0; time < 1000; ++time) {
        EXPECT_FALSE(isWriteLockHeld(walIndex));
    }
    EXPECT_TRUE(isLockedForOtherProcesses(index, firstLockByte + 3, 5)) << "the reader's lock";
    own.run("COMMIT");
    EXPECT_FALSE(isLockedForOtherProcesses(index, firstLockByte + 3, 5));
}

TEST_F(WalIndexTest, GoingAwayDoesNotDropThisProcessesOwnLocks)
{
    SameProcessConnection own(store);
    own.run("BEGIN; SELECT count(*) FROM message");
    EXPECT_FALSE(isWriteLockHeld(*std::make_unique<WalIndex>(folder.path() / "chat.db-wal")));
    EXPECT_TRUE(isLockedForOtherProcesses(index, firstLockByte + 3, 5)) << "the reader's lock";
    own.run("COMMIT");
}

TEST_F(WalIndexTest, OpensTheIndexOnce)
{
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    const auto before = openDescriptors();
    for (int time = 0; time < 100; ++time) {
        (void)isWriteLockHeld(walIndex);
    }
    EXPECT_EQ(openDescriptors(), before);
}

/// The lock of a shared index that the test makes itself.
class StandaloneWalIndex : public testing::Test
{
protected:
    StandaloneWalIndex() { writeFile(index, "an index"); }

    TemporaryFolder folder;
    std::filesystem::path log = folder.path() / "store-wal";
    std::filesystem::path index = folder.path() / "store-shm";
    WalIndex walIndex{log};
};

TEST_F(StandaloneWalIndex, WriteLockIsTheWritersByteAlone)
{
    for (off_t byte = firstLockByte - 1; byte < firstLockByte + numberOfLockBytes; ++byte) {
        const ForeignLock foreign(index, byte);
        EXPECT_EQ(isWriteLockHeld(walIndex), byte == firstLockByte) << byte;
    }
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, WriteLockIsHeldExclusivelyOrNotAtAll)
{
    const ForeignLock foreign(index, firstLockByte, ForeignLock::Kind::shared);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, WriteLockOfAFileThatIsNoLogIsFree)
{
    const ForeignLock foreign(index, firstLockByte);
    for (const char* name : {"store", "store-shm", "store-wal2", "store.wal", "-wa", ""}) {
        EXPECT_FALSE(WalIndex(folder.path() / name).writeLock() == WalIndex::Lock::held) << name;
    }
    EXPECT_FALSE(WalIndex("").writeLock() == WalIndex::Lock::held);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
}

/// In folders with odd names.
class WalIndexInFolder : public StandaloneWalIndex, public testing::WithParamInterface<const char*>
{};

INSTANTIATE_TEST_SUITE_P(
    Odd, WalIndexInFolder, testing::Values("a-wal folder\n-wal", "not text \xFF"));

TEST_P(WalIndexInFolder, WriteLockIsFound)
{
    if (!supportsFileName(folder.path() / GetParam())) {
        GTEST_SKIP() << "the file system takes no such name";
    }
    const auto odd = folder.path() / GetParam() / "store-wal-wal";
    const std::string sharedIndex = odd.string().substr(0, odd.string().size() - 4) + "-shm";
    writeFile(sharedIndex, "an index");
    WalIndex oddIndex(odd);
    EXPECT_FALSE(isWriteLockHeld(oddIndex));
    const ForeignLock foreign(sharedIndex, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(oddIndex));
}

TEST_F(StandaloneWalIndex, WriteLockIsFreeWithoutAnIndexAndFoundWhenThereIsOne)
{
    std::filesystem::remove(index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    EXPECT_FALSE(std::filesystem::exists(index)) << "asking makes none";
    writeFile(index, "an index");
    const ForeignLock foreign(index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, WriteLockIsFreeWhenTheIndexWasDeletedUnderItsWriter)
{
    const ForeignLock foreign(index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    std::filesystem::remove(index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, WriteLockIsThatOfANewIndexInTheOldOnesPlace)
{
    const ForeignLock foreign(index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));

    const auto replacement = folder.path() / "replacement";
    writeFile(replacement, "another index");
    std::filesystem::rename(replacement, index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));

    const ForeignLock second(index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, WriteLockIsFreeWhenTheIndexMayNotBeRead)
{
    const ForeignLock foreign(index, firstLockByte);
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(index, std::filesystem::perms::none);
    const auto run = runForked([this] {
        becomeUnprivilegedUser();
        ::_exit(isWriteLockHeld(walIndex) ? 1 : 0);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
}

TEST_F(StandaloneWalIndex, WriteLockIsThatOfTheKnownIndexWhileItCannotBeFound)
{
    std::optional<ForeignLock> foreign(std::in_place, index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    const auto whileItCannotBeFound = [this] {
        return runForked([this] {
            handToUnprivilegedUser(folder.path());
            std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
            becomeUnprivilegedUser();
            std::error_code error;
            (void)std::filesystem::exists(index, error);
            const bool isHeld = isWriteLockHeld(walIndex);
            std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
            ::_exit(error.value() != EACCES ? 2 : isHeld ? 1 : 0);
        });
    };
    EXPECT_EQ(whileItCannotBeFound().status, 1);
    foreign.reset();
    EXPECT_EQ(whileItCannotBeFound().status, 0);
}

TEST_F(StandaloneWalIndex, WriteLockIsFreeWhenSomethingElseStandsInTheIndexesPlace)
{
    std::filesystem::remove(index);
    std::filesystem::create_directory(index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    std::filesystem::remove(index);
    std::filesystem::create_symlink(index, index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    std::filesystem::remove(index);

    // A pipe without a writer would block an ordinary open; an alarm ends the process if it does.
    ASSERT_EQ(::mkfifo(index.c_str(), 0600), 0);
    const auto run = runForked([this] {
        ::alarm(10);
        ::_exit(isWriteLockHeld(walIndex) ? 1 : 0);
    });
    EXPECT_EQ(run.status, 0);
}

TEST_F(StandaloneWalIndex, WriteLockIsNotHandedDownToOtherPrograms)
{
    (void)isWriteLockHeld(walIndex);
    int found = 0;
    struct stat expected
    {};
    ASSERT_EQ(::stat(index.c_str(), &expected), 0);
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        struct stat target
        {};
        if (::fstat(descriptor, &target) == 0 && target.st_dev == expected.st_dev &&
            target.st_ino == expected.st_ino)
        {
            EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
            EXPECT_EQ(::fcntl(descriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
            ++found;
        }
    }
    EXPECT_EQ(found, 1);
}

} // namespace
} // namespace orlimo
