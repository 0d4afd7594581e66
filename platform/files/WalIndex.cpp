#include "platform/files/WalIndex.h"

#include <bit>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {

namespace {

/// The byte that a writer locks, WALINDEX_LOCK_OFFSET + WAL_WRITE_LOCK in SQLite's WAL-index
/// format.
constexpr off_t writeLockByte = 120;

/// The one version of the WAL-index format, and of the log's.
constexpr std::uint32_t formatVersion = 3'007'000;

/// The log's own header, and what precedes the page in each frame.
constexpr std::int64_t logHeaderSize = 32;
constexpr std::int64_t frameHeaderSize = 24;

/// The index's header as it is stored, in native byte order and twice: a writer updates the second
/// copy first, so that the two differ meanwhile.
struct StoredHeader
{
    std::uint32_t version;
    std::uint32_t unused;
    std::uint32_t changes;
    std::uint8_t isInitialized;
    std::uint8_t isChecksumBigEndian;
    std::uint16_t pageSize;
    std::uint32_t frames;
    std::uint32_t pages;
    std::array<std::uint32_t, 2> frameChecksum;
    std::array<std::uint32_t, 2> salts;
    std::array<std::uint32_t, 2> checksum;
};
static_assert(sizeof(StoredHeader) == 48);

/// A page of 65536 bytes is stored as 1.
std::uint32_t pageSizeOf(const StoredHeader& header)
{
    constexpr std::uint32_t largest = 65'536;
    return header.pageSize == 1 ? largest : header.pageSize;
}

bool isKnownFormat(const StoredHeader& header)
{
    constexpr std::uint32_t smallestPage = 512;
    const std::uint32_t pageSize = pageSizeOf(header);
    const bool isPageSize = pageSize >= smallestPage && std::has_single_bit(pageSize);
    // The index of a log that was never written knows no page size yet.
    return header.version == formatVersion && header.isInitialized == 1 &&
           (isPageSize || header.frames == 0);
}

} // namespace

std::int64_t WalIndex::Header::committedBytes() const
{
    return frames == 0 ? 0 : logHeaderSize + frames * (frameHeaderSize + pageSize);
}

std::uint32_t WalIndex::Header::restartsSince(const Header& earlier) const
{
    return ntohl(salts[0]) - ntohl(earlier.salts[0]);
}

WalIndex::WalIndex(const std::filesystem::path& log)
{
    constexpr std::string_view suffix = "-wal";
    std::string name = log.string();
    if (name.ends_with(suffix)) {
        name.replace(name.size() - suffix.size(), suffix.size(), "-shm");
        file = name;
    }
}

WalIndex::Reading WalIndex::read()
{
    std::array<StoredHeader, 2> copies{};
    if (!open() || ::pread(descriptor, copies.data(), sizeof copies, 0) != sizeof copies) {
        return {State::absent, {}};
    }
    if (std::memcmp(&copies[0], &copies[1], sizeof(StoredHeader)) != 0) {
        return {State::changing, {}};
    }
    const StoredHeader& header = copies[0];
    if (!isKnownFormat(header)) {
        return {State::absent, {}};
    }
    return {
        State::readable,
        {.commits = header.changes,
         .frames = header.frames,
         .pageSize = pageSizeOf(header),
         .salts = header.salts}};
}

WalIndex::Lock WalIndex::writeLock()
{
    if (!open()) {
        return Lock::free;
    }
    struct flock lock
    {};
    lock.l_type = F_RDLCK; // conflicts with an exclusive lock and with nothing else
    lock.l_whence = SEEK_SET;
    lock.l_start = writeLockByte;
    lock.l_len = 1;
    if (::fcntl(descriptor, F_GETLK, &lock) != 0) {
        return Lock::unknown;
    }
    return lock.l_type == F_UNLCK ? Lock::free : Lock::held;
}

/// Opens the index unless it is open; the new one if it was replaced.
bool WalIndex::open()
{
    if (!file) {
        return false;
    }
    struct stat current
    {};
    if (::stat(file->c_str(), &current) != 0) {
        // An index that cannot be examined at the moment is most likely still the one that is open.
        return errno != ENOENT && descriptor >= 0;
    }
    if (descriptor >= 0 && current.st_dev == device && current.st_ino == inode) {
        return true;
    }
    // The descriptor of an index that was replaced stays open for the reason given in the header.
    const int opened = ::open(file->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
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
