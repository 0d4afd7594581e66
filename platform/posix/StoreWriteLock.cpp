#include "platform/posix/StoreWriteLock.h"

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

namespace orlimo {

namespace {

/// The byte that a writer locks, WALINDEX_LOCK_OFFSET + WAL_WRITE_LOCK in SQLite's WAL-index
/// format.
constexpr off_t writeLockByte = 120;

} // namespace

StoreWriteLock::StoreWriteLock(const std::filesystem::path& log)
{
    constexpr std::string_view suffix = "-wal";
    std::string name = log.string();
    if (name.ends_with(suffix)) {
        name.replace(name.size() - suffix.size(), suffix.size(), "-shm");
        sharedIndex = name;
    }
}

bool StoreWriteLock::isHeldElsewhere()
{
    if (!openSharedIndex()) {
        return false;
    }
    struct flock lock
    {};
    lock.l_type = F_RDLCK; // conflicts with a writer's exclusive lock and with nothing else
    lock.l_whence = SEEK_SET;
    lock.l_start = writeLockByte;
    lock.l_len = 1;
    // Where the host does not tell, it is to be asked again: a commit that is reported before it
    // can be read is a message missed.
    return ::fcntl(descriptor, F_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

bool StoreWriteLock::openSharedIndex()
{
    if (!sharedIndex) {
        return false;
    }
    struct stat present
    {};
    if (::stat(sharedIndex->c_str(), &present) != 0) {
        // One that cannot be looked at for the moment is most likely still the one that was opened.
        return errno != ENOENT && descriptor >= 0;
    }
    if (descriptor >= 0 && present.st_dev == device && present.st_ino == inode) {
        return true;
    }
    // A new index has taken the old one's place; the old descriptor stays open for the reason
    // above.
    const int opened = ::open(sharedIndex->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status
    {};
    if (opened < 0 || ::fstat(opened, &status) != 0) {
        return false;
    }
    descriptor = opened;
    device = status.st_dev;
    inode = status.st_ino;
    return true;
}

} // namespace orlimo
