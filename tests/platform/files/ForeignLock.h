#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orlimo {

/// A process that holds a lock on one byte of a file for as long as the object lives.
class ForeignLock
{
public:
    /// Returns when the lock, exclusive or F_RDLCK, is held. One that cannot be taken is a test
    /// failure.
    ForeignLock(const std::filesystem::path& file, off_t byte, short type = F_WRLCK)
    {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        holder = ::fork();
        if (holder == 0) {
            ::close(ends[0]);
            struct flock lock = lockOf(type, byte, 1);
            char held = ::fcntl(::open(file.c_str(), O_RDWR), F_SETLK, &lock) == 0 ? 'y' : 'n';
            (void)!::write(ends[1], &held, 1);
            (void)!::read(ends[1], &held, 1);
            ::_exit(0);
        }
        ::close(ends[1]);
        connection = UniqueFd(ends[0]);
        (void)::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        char report = '\0';
        EXPECT_EQ(::read(ends[0], &report, 1), 1);
        EXPECT_EQ(report, 'y') << "no lock on " << file;
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
    /// Ends the holder when this process is killed.
    UniqueFd connection;
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
