#pragma once

#include "tests/platform/files/ForeignLock.h"
#include "tests/support/StoreWriter.h"

#include <filesystem>
#include <optional>

struct sqlite3;

namespace orlimo {

/// Locks readers out of a store as another program does: out of one with a rollback journal by an
/// exclusive transaction, out of one with a log by the recovery after a crash. A reader that has
/// the schema already meets the lock at its first step. The store must have been read before.
class StoreLock
{
public:
    StoreLock(const std::filesystem::path& libraryFolder, StoreWriter::Journal journal);
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;
    ~StoreLock();

private:
    /// Makes the two copies of the index's header differ, or match again.
    void changeHeader() const;

    std::filesystem::path index;
    sqlite3* connection = nullptr;
    std::optional<ForeignLock> writing;
    std::optional<ForeignLock> recovering;
};

} // namespace orlimo
