#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>

#include <sys/types.h>

namespace orlimo {

/// The shared index of an SQLite write-ahead log, the file beside the log whose name ends in
/// "-shm": which of the log's frames are committed, and who is at work on it. Reading it takes
/// nothing and disturbs nobody. Used on one thread.
class WalIndex
{
public:
    /// What the index publishes about the log.
    struct Header
    {
        /// Changes with each commit, also when the log is restarted.
        std::uint32_t commits = 0;
        /// How many frames of the log are committed.
        std::uint32_t frames = 0;
        /// The size of a page of the store, in bytes.
        std::uint32_t pageSize = 0;
        /// Change each time the log is restarted. The first is a number, stored with its highest
        /// byte first, that grows by one then; the second is random.
        std::array<std::uint32_t, 2> salts{};

        /// How many of the log's bytes hold commits that can be read.
        [[nodiscard]] std::int64_t committedBytes() const;

        /// How often the log was restarted since `earlier`, which is of the same log.
        [[nodiscard]] std::uint32_t restartsSince(const Header& earlier) const;

        [[nodiscard]] bool operator==(const Header&) const = default;
    };

    /// How much the index tells.
    enum class State {
        absent,   ///< there is no index that could be read, or none of a known format
        changing, ///< a writer is just publishing a commit
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
        unknown, ///< the system did not tell
    };

    /// For the log at `log`. A file whose name does not end in "-wal" has no index.
    explicit WalIndex(const std::filesystem::path& log);

    /// What the index says now.
    [[nodiscard]] Reading read();

    /// The lock that a writer holds from before it appends its first frame until after its commit
    /// can be read, and a checkpoint that cuts the log until it has. Free without an index; a lock
    /// of this process's own does not count.
    [[nodiscard]] Lock writeLock();

private:
    [[nodiscard]] bool open();

    std::optional<std::filesystem::path> file;
    /// Never closed: closing any descriptor of the index drops every lock that this process holds
    /// on it, those of its own SQLite connection included.
    int descriptor = -1;
    dev_t device = 0;
    ino_t inode = 0;
};

} // namespace orlimo
