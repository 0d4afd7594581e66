#include "tests/capture/stores/StoreLock.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

namespace {

// Bytes of the shared index, from SQLite's WAL-index format.
constexpr off_t writeLock = 120;
constexpr off_t recoveryLock = 122;

} // namespace

StoreLock::StoreLock(const std::filesystem::path& libraryFolder, StoreWriter::Journal journal)
    : index(libraryFolder / "Messages/chat.db-shm")
{
    if (journal == StoreWriter::Journal::rollback) {
        const auto store = libraryFolder / "Messages/chat.db";
        EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK);
        EXPECT_EQ(
            sqlite3_exec(connection, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
        return;
    }
    writing.emplace(index, writeLock);
    recovering.emplace(index, recoveryLock);
    changeHeader();
}

StoreLock::~StoreLock()
{
    if (recovering) {
        changeHeader();
    }
    sqlite3_close(connection);
}

void StoreLock::changeHeader() const
{
    // In another process: closing a descriptor of the index drops all locks of its process on it.
    const ForkedRun run = runForked([&] {
        const int descriptor = ::open(index.c_str(), O_RDWR | O_CLOEXEC);
        char byte = 0;
        (void)!::pread(descriptor, &byte, 1, 0);
        byte = static_cast<char>(~byte);
        ::_exit(::pwrite(descriptor, &byte, 1, 0) == 1 ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0) << index;
}

} // namespace orlimo
