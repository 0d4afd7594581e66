#include "platform/files/GrowthDetector.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// How long growth may wait while the index does not show whether the commit can be read, or the
/// state of the write lock is unknown.
constexpr Uptime::duration lockTimeout = 1s;

/// How often a snapshot is attempted while writers publish commits.
constexpr int maxSnapshotAttempts = 8;

std::optional<std::int64_t> sizeOf(int descriptor)
{
    struct stat status
    {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return status.st_size;
}

/// An eighth of the time waited so far, so that the delay stays in proportion to the commit and a
/// long commit costs few wake-ups; later a hundredth, which users do not notice, and at most a
/// second.
Uptime::duration pollIntervalAfter(Uptime::duration waited)
{
    const auto early = std::clamp<Uptime::duration>(waited / 8, 100us, 5ms);
    return std::clamp<Uptime::duration>(waited / 100, early, 1s);
}

} // namespace

GrowthDetector::GrowthDetector(
    int fileDescriptor, const std::filesystem::path& name, UptimeClock uptimeClock)
    : descriptor(fileDescriptor)
    , index(name)
    , clock(std::move(uptimeClock))
{
    const auto snapshot = takeSnapshot();
    if (!snapshot.size) {
        throw std::system_error(errno, std::generic_category(), "cannot determine a file's size");
    }
    startAt(*snapshot.size);
    if (!snapshot.isReadable()) {
        return;
    }
    lastHeader = snapshot.index.header;
    // A commit in progress is still to be reported, even if the log has already grown by it.
    if (index.writeLock() == WalIndex::Lock::held) {
        startAt(std::min(*snapshot.size, lastHeader->committedBytes()));
    }
}

bool GrowthDetector::check(bool hasGrown)
{
    // Queried before the index is read: with the lock free, the index holds all commits.
    const bool mayFramesBeReplaced = hasAbandonedFrames() && isLogBeingWritten();
    const auto snapshot = takeSnapshot();
    if (!snapshot.size) {
        return reportUnknownGrowth();
    }
    const bool decided = isDecided(snapshot, hasGrown);
    if (decided) {
        moveStart(snapshot, hasGrown);
    }
    const bool grown = decided && holdsGrowth(snapshot);
    if (decided) {
        lastSize = *snapshot.size;
        if (!grown && !mayFramesBeReplaced) {
            waitingSince.reset();
            return false;
        }
    }
    if (!waitingSince) {
        waitingSince = clock();
    }
    if (!grown || mustWait(snapshot)) {
        return false;
    }
    reportUpTo(snapshot);
    return true;
}

/// A superfluous report is better than a missed message; one before the commit would be too early.
bool GrowthDetector::reportUnknownGrowth()
{
    if (!waitingSince) {
        waitingSince = clock();
    }
    if (index.writeLock() != WalIndex::Lock::free && !hasExpired()) {
        return false;
    }
    waitingSince.reset();
    // What can be read now must not be reported when the next commit is still being written.
    const auto reading = index.read();
    if (reading.state == WalIndex::State::readable && lastHeader &&
        reading.header.salts == lastHeader->salts)
    {
        lastHeader = reading.header;
        reportedCommits = std::max(reportedCommits, lastHeader->committedBytes());
        reportedSize = std::max(reportedSize, reportedCommits);
        lastSize = std::max(lastSize, reportedSize);
    }
    return true;
}

Uptime::duration GrowthDetector::pollInterval() const
{
    return pollIntervalAfter(clock() - waitingSince.value());
}

/// Reads the index before and after the size, so that both belong to the same commit and the log
/// was not restarted in between.
GrowthDetector::Snapshot GrowthDetector::takeSnapshot()
{
    Snapshot snapshot;
    for (int attempt = 0; attempt < maxSnapshotAttempts; ++attempt) {
        snapshot.index = index.read();
        // Queried before the size: with the lock free, the log has been truncated already.
        snapshot.isBeingRestarted = isBeingRestarted(snapshot.index);
        snapshot.size = sizeOf(descriptor);
        if (snapshot.index.state == WalIndex::State::absent || !snapshot.size) {
            return snapshot;
        }
        // And after it: the next writer may have begun in between and changed the size.
        snapshot.isBeingRestarted = snapshot.isBeingRestarted || isBeingRestarted(snapshot.index);
        const auto again = index.read();
        if (snapshot.isReadable() && again.state == WalIndex::State::readable &&
            again.header == snapshot.index.header)
        {
            return snapshot;
        }
    }
    snapshot.index.state = WalIndex::State::changing;
    return snapshot;
}

bool GrowthDetector::isBeingRestarted(const WalIndex::Reading& reading)
{
    return reading.state == WalIndex::State::readable && lastHeader &&
           reading.header.salts != lastHeader->salts && isLogBeingWritten();
}

/// A lock of unknown state counts as held until the wait expires.
bool GrowthDetector::isLogBeingWritten()
{
    const auto lock = index.writeLock();
    return lock == WalIndex::Lock::held || (lock == WalIndex::Lock::unknown && !hasExpired());
}

/// Whether commits fill the log to its end.
bool GrowthDetector::isFull(const Snapshot& snapshot)
{
    return snapshot.index.header.frames > 0 &&
           snapshot.index.header.committedBytes() == *snapshot.size;
}

/// Whether growth can be judged yet. A restarted log of the same length was not truncated, is about
/// to be, or was and has grown to its old length: its next commit shows which.
bool GrowthDetector::isDecided(const Snapshot& snapshot, bool hasGrown) const
{
    if (snapshot.index.state == WalIndex::State::changing) {
        return hasExpired();
    }
    return !snapshot.isBeingRestarted || hasGrown || *snapshot.size != knownEnd() ||
           isFull(snapshot);
}

/// Whether the log was neither truncated nor restarted in between, so that `later` holds all of
/// `earlier`.
bool GrowthDetector::isSameLog(const Snapshot& earlier, const Snapshot& later)
{
    return later.size && *later.size >= *earlier.size && later.index.state == earlier.index.state &&
           (!later.isReadable() || later.index.header.salts == earlier.index.header.salts);
}

/// Moves the point from which growth counts, down if the file was truncated.
void GrowthDetector::moveStart(const Snapshot& snapshot, bool hasGrown)
{
    if (snapshot.isReadable()) {
        moveStartOfStoreLog(snapshot, hasGrown);
    } else if (*snapshot.size < reportedSize || (hasGrown && *snapshot.size == reportedSize)) {
        startAt(hasGrown ? 0 : *snapshot.size);
    }
}

void GrowthDetector::moveStartOfStoreLog(const Snapshot& snapshot, bool hasGrown)
{
    const WalIndex::Header& header = snapshot.index.header;
    const bool isRestarted = lastHeader && header.salts != lastHeader->salts;
    if (isRestarted && (lastSize > reportedSize || mayHaveLostCommit(snapshot))) {
        hasUnreportedCommit = true;
    }
    if (*snapshot.size < knownEnd()) {
        const bool hasNewCommit =
            lastHeader ? header.commits != lastHeader->commits : header.frames > 0;
        const bool isBeingWritten = index.writeLock() != WalIndex::Lock::free;
        startAt(hasGrown || hasNewCommit || isBeingWritten ? 0 : *snapshot.size);
    } else if (isRestarted) {
        // A log that is full to its old end was truncated and has grown again, or was overwritten
        // as a whole, which look the same. A superfluous report is better than a missed message.
        const bool wasTruncated = *snapshot.size == knownEnd() && (isFull(snapshot) || hasGrown);
        startAt(wasTruncated ? 0 : knownEnd());
    }
    lastHeader = header;
}

/// Whether a commit since the previous check may have been truncated away. If the new log holds any
/// commits, at least one of those since then is among them. A log that was restarted twice may have
/// been truncated the first time.
bool GrowthDetector::mayHaveLostCommit(const Snapshot& snapshot) const
{
    const WalIndex::Header& header = snapshot.index.header;
    const std::uint32_t commits = header.commits - lastHeader->commits;
    const bool mayBeCut =
        *snapshot.size < knownEnd() || *snapshot.size == 0 || header.restartsSince(*lastHeader) > 1;
    return mayBeCut && commits > (header.frames > 0 ? 1U : 0U);
}

/// The length of the file at the previous check, waiting growth included.
std::int64_t GrowthDetector::knownEnd() const
{
    return std::max(reportedSize, lastSize);
}

/// From here on only what goes beyond `size` is growth.
void GrowthDetector::startAt(std::int64_t size)
{
    reportedSize = reportedCommits = earlierLogEnd = size;
}

bool GrowthDetector::holdsGrowth(const Snapshot& snapshot) const
{
    return *snapshot.size > reportedSize || holdsNewCommit(snapshot);
}

bool GrowthDetector::holdsNewCommit(const Snapshot& snapshot) const
{
    return hasUnreportedCommit ||
           (snapshot.isReadable() &&
            std::min(snapshot.index.header.committedBytes(), *snapshot.size) >
                std::max(reportedCommits, earlierLogEnd));
}

/// Whether the log ends in rolled back frames, which a commit may overwrite.
bool GrowthDetector::hasAbandonedFrames() const
{
    return std::max(reportedCommits, earlierLogEnd) < reportedSize;
}

bool GrowthDetector::mustWait(const Snapshot& snapshot)
{
    if (holdsNewCommit(snapshot)) {
        return false;
    }
    switch (index.writeLock()) {
    case WalIndex::Lock::free:
        return snapshot.index.state == WalIndex::State::changing && !hasExpired();
    case WalIndex::Lock::held:
        return snapshot.isReadable() || !hasExpired();
    case WalIndex::Lock::unknown:
        break;
    }
    return !hasExpired();
}

bool GrowthDetector::hasExpired() const
{
    return waitingSince && clock() - *waitingSince >= lockTimeout;
}

/// Records as reported the growth in `snapshot` and what has followed, as far as it can be read by
/// now. The rest belongs to the next commit, which waits.
void GrowthDetector::reportUpTo(const Snapshot& snapshot)
{
    const bool isNewCommit = holdsNewCommit(snapshot);
    const bool hasGrownFromNothing = reportedSize == 0;
    const auto later = takeSnapshot();
    const Snapshot& latest = isSameLog(snapshot, later) ? later : snapshot;
    const std::int64_t commits =
        latest.isReadable() ? std::min(latest.index.header.committedBytes(), *latest.size) : 0;
    // Queried after the sizes: with the lock free, all that was written by then can be read.
    const bool isNextBeingWritten = index.writeLock() != WalIndex::Lock::free;
    reportedSize = isNextBeingWritten
                       ? std::max({reportedSize, commits, isNewCommit ? 0 : *snapshot.size})
                       : *latest.size;
    reportedCommits = commits;
    if (!latest.isReadable()) {
        reportedCommits = earlierLogEnd = reportedSize;
    } else {
        lastHeader = latest.index.header;
        // All commits up to this point can be read now, even if the log has been restarted.
        if (later.isReadable()) {
            lastHeader->commits = later.index.header.commits;
        }
        // Behind the commits of a log that has not passed its old end lie older frames; so it does
        // in a file that was truncated to a limit above zero.
        if (!isNextBeingWritten &&
            (commits < earlierLogEnd || (hasGrownFromNothing && isNewCommit))) {
            earlierLogEnd = reportedSize;
        }
    }
    hasUnreportedCommit = false;
    waitingSince.reset();
    lastSize = *latest.size;
    if (lastSize > reportedSize) {
        waitingSince = clock();
    }
}

} // namespace orlimo
