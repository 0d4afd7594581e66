#include "platform/files/WalIndex.h"

#include "tests/platform/files/ForeignLock.h"
#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/files/WriterProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// SQLite's locks in the shared index: the writer's first, then the checkpointer's, that of
/// recovery, and the readers'; the last one marks the file as in use.
constexpr off_t firstLockByte = 120;
constexpr off_t numberOfLockBytes = 9;

bool isWriteLockHeld(WalIndex& index)
{
    return index.writeLock() == WalIndex::Lock::held;
}

/// The index of a real store that another process writes, and a connection in this process.
class WalIndexTest : public testing::Test
{
protected:
    WalIndexTest() { EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK); }
    ~WalIndexTest() override { sqlite3_close(connection); }

    void runHere(const char* sql)
    {
        EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(connection);
    }

    sqlite3* connection = nullptr;
    TemporaryFolder folder;
    std::filesystem::path store = folder.path() / "chat.db";
    std::filesystem::path index = folder.path() / "chat.db-shm";
    WriterProcess writer{store};
    WalIndex walIndex{folder.path() / "chat.db-wal"};
};

TEST_F(WalIndexTest, WriteLockIsHeldFromTheFirstFrameToTheEndOfTheTransaction)
{
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    for (const char* const end : {"commit", "rollback"}) {
        writer.holdTransactionOpen();
        EXPECT_TRUE(isWriteLockHeld(walIndex));
        EXPECT_TRUE(isWriteLockHeld(walIndex)) << "querying it changes nothing";
        writer.sendCommand(end);
        EXPECT_FALSE(isWriteLockHeld(walIndex)) << end;
    }
    EXPECT_EQ(visibleMessages(store), 2);
    writer.sendCommand("truncate");
    EXPECT_FALSE(isLockedForOtherProcesses(index, firstLockByte, numberOfLockBytes - 1));
    writer.holdTransactionOpen();
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    writer.crash();
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, WriteLockOfThisProcessDoesNotCount)
{
    runHere("BEGIN IMMEDIATE; DELETE FROM message");
    EXPECT_TRUE(isLockedForOtherProcesses(index, firstLockByte, 1));
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(WalIndexTest, QueryDropsNoLockOfThisProcessAndOpensTheIndexOnce)
{
    runHere("BEGIN; SELECT count(*) FROM message");
    writer.sendCommand("text after the reader has begun");
    ASSERT_TRUE(isLockedForOtherProcesses(index, firstLockByte + 3, 5)) << "the reader's lock";
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    const auto descriptors = openDescriptors();
    for (int time = 0; time < 100; ++time) {
        EXPECT_FALSE(isWriteLockHeld(walIndex));
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_FALSE(isWriteLockHeld(*std::make_unique<WalIndex>(folder.path() / "chat.db-wal")));
    EXPECT_TRUE(isLockedForOtherProcesses(index, firstLockByte + 3, 5)) << "the reader's lock";
    runHere("COMMIT");
    EXPECT_FALSE(isLockedForOtherProcesses(index, firstLockByte + 3, 5));
}

/// An index that the test creates itself.
class StandaloneWalIndex : public testing::Test
{
protected:
    StandaloneWalIndex() { writeFile(index, "an index"); }

    TemporaryFolder folder;
    /// A folder whose name is not text, where the file system accepts it.
    std::filesystem::path store = folder.path() /
                                  (supportsFileName(folder.path() / "\xFF") ? "\xFF" : "a") /
                                  "-wal folder\n-wal" / "store-wal";
    std::filesystem::path index = store.string() + "-shm";
    WalIndex walIndex{store.string() + "-wal"};
};

TEST_F(StandaloneWalIndex, WriteLockIsAnExclusiveOneOnTheWritersByteAlone)
{
    for (off_t byte = firstLockByte - 1; byte < firstLockByte + numberOfLockBytes; ++byte) {
        const ForeignLock foreign(index, byte);
        EXPECT_EQ(isWriteLockHeld(walIndex), byte == firstLockByte) << byte;
    }
    {
        const ForeignLock foreign(index, firstLockByte, F_RDLCK);
        EXPECT_FALSE(isWriteLockHeld(walIndex));
    }
    const ForeignLock foreign(index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    for (const char* noLog :
         {"store-wal", "store-wal-shm", "store-wal-wal2", "store-wal.wal", "-wa", ""})
    {
        WalIndex none(index.parent_path() / noLog);
        EXPECT_FALSE(isWriteLockHeld(none)) << noLog;
    }
    WalIndex nameless("");
    EXPECT_FALSE(isWriteLockHeld(nameless));
}

TEST_F(StandaloneWalIndex, IsTheFileThatHasItsNameNow)
{
    std::filesystem::remove(index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
    EXPECT_FALSE(std::filesystem::exists(index)) << "querying creates none";
    for (const char* const content : {"an index", "another index"}) {
        const auto replacement = folder.path() / "replacement";
        writeFile(replacement, content);
        std::filesystem::rename(replacement, index);
        EXPECT_FALSE(isWriteLockHeld(walIndex));
        const ForeignLock foreign(index, firstLockByte);
        EXPECT_TRUE(isWriteLockHeld(walIndex));
    }
    const ForeignLock foreign(index, firstLockByte);
    std::filesystem::remove(index);
    EXPECT_FALSE(isWriteLockHeld(walIndex));
}

TEST_F(StandaloneWalIndex, KnownOneIsQueriedWhileItsFolderCannotBeSearched)
{
    std::optional<ForeignLock> foreign(std::in_place, index, firstLockByte);
    EXPECT_TRUE(isWriteLockHeld(walIndex));
    std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
    for (const bool isLocked : {true, false}) {
        if (!isLocked) {
            foreign.reset();
        }
        const UnprivilegedScope unprivileged;
        std::error_code error;
        (void)std::filesystem::exists(index, error);
        EXPECT_EQ(error.value(), EACCES);
        EXPECT_EQ(isWriteLockHeld(walIndex), isLocked);
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
}

TEST_F(StandaloneWalIndex, AnythingButAReadableFileHasNoLock)
{
    {
        const ForeignLock foreign(index, firstLockByte);
        std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
        std::filesystem::permissions(index, std::filesystem::perms::none);
        const UnprivilegedScope unprivileged;
        EXPECT_FALSE(isWriteLockHeld(walIndex));
    }
    const std::vector<std::function<void()>> kinds{
        [this] { std::filesystem::create_directory(index); },
        [this] { std::filesystem::create_symlink(index, index); },
        // Without a writer, it would block an ordinary open.
        [this] { ASSERT_EQ(::mkfifo(index.c_str(), 0666), 0); }};
    for (const auto& make : kinds) {
        std::filesystem::remove(index);
        make();
        EXPECT_FALSE(isWriteLockHeld(walIndex));
    }
}

TEST_F(StandaloneWalIndex, IsOpenedForReadingAndCloseOnExec)
{
    // The descriptor that is given out next is the index's.
    const int next = ::dup(0);
    ::close(next);
    (void)isWriteLockHeld(walIndex);
    EXPECT_EQ(::fcntl(next, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_EQ(::fcntl(next, F_GETFL) & O_ACCMODE, O_RDONLY);
}

} // namespace
} // namespace orlimo
