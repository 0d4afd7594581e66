#pragma once

#include "platform/files/UniqueFd.h"

#include <filesystem>

#include <sys/types.h>

namespace orlimo {

/// A process that holds a lock on one byte of a file for as long as the object lives.
class ForeignLock
{
public:
    enum class Kind {
        shared,
        exclusive,
    };

    /// Returns when the lock is held. A lock that cannot be taken is a test failure.
    ForeignLock(const std::filesystem::path& file, off_t byte, Kind kind = Kind::exclusive);
    ForeignLock(const ForeignLock&) = delete;
    ForeignLock& operator=(const ForeignLock&) = delete;
    ~ForeignLock();

    [[nodiscard]] pid_t processId() const { return holder; }

private:
    pid_t holder = -1;
    UniqueFd holderLifetimePipe;
};

/// Whether another process finds a lock in the `length` bytes of `file` from `first` on: one of
/// this process when nobody else uses the file.
[[nodiscard]] bool
isLockedForOtherProcesses(const std::filesystem::path& file, off_t first, off_t length);

} // namespace orlimo
