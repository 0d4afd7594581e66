#include "platform/instance/macos/ProcessLock.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

namespace {

struct flock wholeFile()
{
    struct flock lock
    {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

ProcessLock::ProcessLock(const std::filesystem::path& file)
    : descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR))
{}

ProcessLock::Outcome ProcessLock::take()
{
    struct flock lock = wholeFile();
    if (::fcntl(descriptor.get(), F_SETLK, &lock) == 0) {
        return Outcome::taken;
    }
    return errno == EACCES || errno == EAGAIN ? Outcome::heldByAnother : Outcome::unavailable;
}

std::optional<pid_t> ProcessLock::holder() const
{
    struct flock lock = wholeFile();
    if (::fcntl(descriptor.get(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) {
        return std::nullopt;
    }
    return lock.l_pid;
}

} // namespace orlimo
