#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OpenPipe.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

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
    ForeignLock(const std::filesystem::path& file, off_t byte, Kind kind = Kind::exclusive)
    {
        const auto ends = openPipe();
        // Open for as long as this process lives: one that is killed leaves no holder behind.
        const auto life = openPipe();
        holder = ::fork();
        if (holder == 0) {
            ::close(life[1]);
            struct flock lock = lockOf(kind == Kind::shared ? F_RDLCK : F_WRLCK, byte, 1);
            char held = ::fcntl(::open(file.c_str(), O_RDWR), F_SETLK, &lock) == 0 ? 'y' : 'n';
            (void)!::write(ends[1], &held, 1);
            (void)!::read(life[0], &held, 1);
            ::_exit(0);
        }
        ::close(ends[1]);
        ::close(life[0]);
        holderLifetimePipe = UniqueFd(life[1]);
        char report = '\0';
        EXPECT_EQ(::read(ends[0], &report, 1), 1);
        EXPECT_EQ(report, 'y') << "no lock on " << file;
        ::close(ends[0]);
    }
    ForeignLock(const ForeignLock&) = delete;
    ForeignLock& operator=(const ForeignLock&) = delete;
    ~ForeignLock()
    {
        if (holder > 0) {
            ::kill(holder, SIGKILL);
            while (::waitpid(holder, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }

    [[nodiscard]] pid_t processId() const { return holder; }

    [[nodiscard]] static struct flock lockOf(short type, off_t first, off_t length)
    {
        struct flock lock
        {};
        lock.l_type = type;
        lock.l_whence = SEEK_SET;
        lock.l_start = first;
        lock.l_len = length;
        return lock;
    }

private:
    pid_t holder = -1;
    UniqueFd holderLifetimePipe;
};

/// Whether another process finds a lock in the `length` bytes of `file` from `first` on: one of
/// this process when nobody else uses the file.
[[nodiscard]] inline bool
isLockedForOtherProcesses(const std::filesystem::path& file, off_t first, off_t length)
{
    const auto run = runForked([&] {
        struct flock lock = ForeignLock::lockOf(F_WRLCK, first, length);
        const int error = ::fcntl(::open(file.c_str(), O_RDWR), F_GETLK, &lock);
        ::_exit(error != 0 ? 2 : lock.l_type == F_UNLCK ? 0 : 1);
    });
    EXPECT_TRUE(run.status == 0 || run.status == 1);
    return run.status == 1;
}

} // namespace orlimo
