#pragma once

#include "platform/files/WalIndex.h"
#include "platform/threads/UptimeClock.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace orlimo {

/// Tells growth of an open file from every other change and decides when it is reported.
///
/// The growth of a store's write-ahead log is reported when a commit that it belongs to can be
/// read, which the shared index beside the log tells, and once for each commit. While a writer is
/// at work it waits, however long that takes; what a writer gave up is reported when it has let go.
/// A log that was cut grows from its beginning; one that is written again from its beginning
/// without having been cut grows only beyond its old end. The growth of any other file is reported
/// at once.
///
/// The system's file watch calls `look` after each change and, while growth waits, after each
/// pause. Used on one thread at a time.
class GrowthDetector
{
public:
    /// For the file behind `fileDescriptor`, opened as `name`. The descriptor stays the caller's
    /// and open for the detector's life. Throws std::system_error when the size cannot be asked.
    GrowthDetector(int fileDescriptor, const std::filesystem::path& name, UptimeClock uptimeClock);

    /// Compares the file with how it was at the last look. True when growth is to be reported now,
    /// with all growth that can be read by then; a file whose size cannot be asked counts as grown.
    /// `hasGrown` says that the system reports growth since the last look: a file that is no longer
    /// than it was must then have been cut in between.
    [[nodiscard]] bool check(bool hasGrown = false);

    /// Whether there is growth that is not reported yet, so that another look is due after a pause.
    [[nodiscard]] bool isWaiting() const { return waitingSince.has_value(); }

    /// How long to wait until the next look. Only while growth waits.
    [[nodiscard]] Uptime::duration pollInterval() const;

private:
    /// The file and its index, as they were at one moment.
    struct Snapshot
    {
        std::optional<std::int64_t> size;
        WalIndex::Reading index;
        /// Whether somebody is at work on a log that was restarted: a writer, or a checkpoint that
        /// is about to cut it.
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
    /// Up to where the commits of the present log were reported. Less than `reportedSize` where a
    /// writer gave frames up: the commit that takes their place is new although the log does not
    /// grow by it.
    std::int64_t reportedCommits = 0;
    /// Up to where the file may still hold what was there before the log was restarted: a commit
    /// that ends within it is no growth.
    std::int64_t earlierLogEnd = 0;
    /// The size at the last look.
    std::int64_t lastSize = 0;
    /// Whether there was growth in a log that has been restarted before it was reported: what was
    /// committed with it can be read from the store.
    bool hasUnreportedCommit = false;
    std::optional<WalIndex::Header> lastHeader;
    std::optional<Uptime> waitingSince;
};

} // namespace orlimo
