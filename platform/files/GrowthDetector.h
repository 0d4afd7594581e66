#pragma once

#include "platform/files/WalIndex.h"
#include "platform/threads/UptimeClock.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace orlimo {

/// Distinguishes growth of an open file from all other changes and decides when to report it.
///
/// Growth of a store's write-ahead log is reported once for each commit, when the commit can be
/// read, as the shared index beside the log shows. While the write lock is held it waits, without a
/// limit; frames that are rolled back are reported when the lock is released. A truncated log grows
/// from its beginning; a log that is restarted without truncation grows only beyond its old end.
/// Growth of any other file is reported at once.
///
/// The file watch calls `check` after each change and, while growth waits, at each poll interval.
/// Used on one thread at a time.
class GrowthDetector
{
public:
    /// For the file behind `fileDescriptor`, opened as `name`. The descriptor stays the caller's
    /// and open for the detector's life. Throws std::system_error when fstat() fails.
    GrowthDetector(int fileDescriptor, const std::filesystem::path& name, UptimeClock uptimeClock);

    /// Compares the file with its state at the previous check. True when growth is to be reported
    /// now, including all that can be read by then; a file of unknown size counts as grown.
    /// `hasGrown` means that the system has reported growth since the previous check: a file that
    /// is not longer than before must then have been truncated in between.
    [[nodiscard]] bool check(bool hasGrown = false);

    /// Whether there is growth that is not reported yet, so that another check is due.
    [[nodiscard]] bool isWaiting() const { return waitingSince.has_value(); }

    /// How long to wait until the next check. Only while growth waits.
    [[nodiscard]] Uptime::duration pollInterval() const;

private:
    /// The file and its index, as they were at one moment.
    struct Snapshot
    {
        std::optional<std::int64_t> size;
        WalIndex::Reading index;
        /// Whether the log was restarted and its write lock is held: by a writer, or by a
        /// checkpoint that is about to truncate it.
        bool isBeingRestarted = false;

        [[nodiscard]] bool isReadable() const { return index.state == WalIndex::State::readable; }
    };

    [[nodiscard]] bool reportUnknownGrowth();
    [[nodiscard]] Snapshot takeSnapshot();
    [[nodiscard]] static bool isFull(const Snapshot& snapshot);
    [[nodiscard]] static bool isSameLog(const Snapshot& earlier, const Snapshot& later);
    [[nodiscard]] bool isBeingRestarted(const WalIndex::Reading& reading);
    [[nodiscard]] bool isLogBeingWritten();
    [[nodiscard]] std::int64_t knownEnd() const;
    [[nodiscard]] bool isDecided(const Snapshot& snapshot, bool hasGrown) const;
    void moveStart(const Snapshot& snapshot, bool hasGrown);
    void moveStartOfStoreLog(const Snapshot& snapshot, bool hasGrown);
    [[nodiscard]] bool mayHaveLostCommit(const Snapshot& snapshot) const;
    void startAt(std::int64_t size);
    [[nodiscard]] bool holdsGrowth(const Snapshot& snapshot) const;
    [[nodiscard]] bool holdsNewCommit(const Snapshot& snapshot) const;
    [[nodiscard]] bool hasAbandonedFrames() const;
    [[nodiscard]] bool mustWait(const Snapshot& snapshot);
    [[nodiscard]] bool hasExpired() const;
    void reportUpTo(const Snapshot& snapshot);

    int descriptor;
    WalIndex index;
    UptimeClock clock;
    /// The size up to which growth was reported.
    std::int64_t reportedSize = 0;
    /// Up to where commits of the current log were reported. Less than `reportedSize` after a
    /// rollback: the commit that overwrites those frames is new although the log does not grow.
    std::int64_t reportedCommits = 0;
    /// Up to where the file may still hold frames from before the restart of the log: a commit that
    /// ends within them is no growth.
    std::int64_t earlierLogEnd = 0;
    /// The size at the previous check.
    std::int64_t lastSize = 0;
    /// Whether a log was restarted before its growth was reported: what was committed with it can
    /// be read from the store.
    bool hasUnreportedCommit = false;
    std::optional<WalIndex::Header> lastHeader;
    std::optional<Uptime> waitingSince;
};

} // namespace orlimo
