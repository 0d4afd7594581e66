#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>

#include <sys/types.h>

namespace orlimo {

/// The shared index of an SQLite write-ahead log, the file beside the log whose name ends in
/// "-shm": which of the log's frames are committed, and whether it is being written. Reading it
/// takes no lock. Used on one thread.
class WalIndex
{
public:
    /// The index's header.
    struct Header
    {
        /// Changes with each commit and when the log is restarted.
        std::uint32_t commits = 0;
        /// How many frames of the log are committed.
        std::uint32_t frames = 0;
        /// The size of a page of the store, in bytes.
        std::uint32_t pageSize = 0;
        /// Change each time the log is restarted. The first is a number, stored with its highest
        /// byte first, that grows by one then; the second is random.
        std::array<std::uint32_t, 2> salts{};

        /// The length of the log up to the end of its last commit, in bytes.
        [[nodiscard]] std::int64_t committedBytes() const;

        /// How often the log was restarted since `earlier`, which is of the same log.
        [[nodiscard]] std::uint32_t restartsSince(const Header& earlier) const;

        [[nodiscard]] bool operator==(const Header&) const = default;
    };

    /// Whether the index can be read.
    enum class State {
        absent,   ///< no readable index, or one of an unknown format
        changing, ///< a writer is publishing a commit
        readable,
    };

    struct Reading
    {
        State state = State::absent;
        /// Only of a readable index.
        Header header;
    };

    /// Whether another process holds a lock.
    enum class Lock {
        free,
        held,
        unknown, ///< the system returned an error
    };

    /// For the log at `log`. A file whose name does not end in "-wal" has no index.
    explicit WalIndex(const std::filesystem::path& log);

    /// The index's current state.
    [[nodiscard]] Reading read();

    /// The write lock: held by a writer from before its first frame until its commit can be read,
    /// and by a checkpoint while it truncates the log. Free without an index; locks of this process
    /// do not count.
    [[nodiscard]] Lock writeLock();

private:
    [[nodiscard]] bool open();

    std::optional<std::filesystem::path> file;
    /// Never closed: closing any descriptor of the index drops every lock that this process holds
    /// on it, including those of its SQLite connection.
    int descriptor = -1;
    dev_t device = 0;
    ino_t inode = 0;
};

} // namespace orlimo
