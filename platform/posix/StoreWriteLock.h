#pragma once

#include <filesystem>
#include <optional>

#include <sys/types.h>

namespace orlimo {

/// Tells whether another process is in the middle of a commit to an SQLite store in WAL mode.
///
/// A writer holds an exclusive lock on one byte of the store's shared index, the file beside the
/// log whose name ends in "-shm", from before it appends its first frame until after its commit can
/// be read. Asking for that lock takes nothing and disturbs nobody. Used on one thread.
class StoreWriteLock
{
public:
    /// For the log at `log`. A file whose name does not end in "-wal" has no such lock.
    explicit StoreWriteLock(const std::filesystem::path& log);

    /// Whether another process holds the lock now. False when there is no shared index, when it
    /// cannot be opened, and for a lock of this process's own; true when the host does not tell.
    [[nodiscard]] bool isHeldElsewhere();

private:
    [[nodiscard]] bool openSharedIndex();

    std::optional<std::filesystem::path> sharedIndex;
    /// Never closed: closing any descriptor of the shared index drops every lock that this process
    /// holds on it, those of its own SQLite connection included.
    int descriptor = -1;
    dev_t device = 0;
    ino_t inode = 0;
};

} // namespace orlimo
