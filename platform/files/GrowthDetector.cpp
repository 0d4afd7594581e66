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

/// How long growth may wait where the index does not tell whether the commit can be read, or the
/// system not whether the writer's lock is held.
constexpr Uptime::duration lockTimeout = 1s;

/// How often a snapshot is tried while writers publish commits.
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

/// An eighth of what the writer has taken so far, so that the delay stays in proportion to the
/// commit and a long commit costs few wake-ups; later a hundredth, which a person does not notice,
/// and at most a second.
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
        throw std::system_error(errno, std::generic_category(), "cannot ask a file's size");
    }
    startAt(*snapshot.size);
    if (!snapshot.isReadable()) {
        return;
    }
    lastHeader = snapshot.index.header;
    // The commit that a writer is at work on is still to come, also when the log has grown by it.
    if (index.writeLock() == WalIndex::Lock::held) {
        startAt(std::min(*snapshot.size, lastHeader->committedBytes()));
    }
}

bool GrowthDetector::check(bool hasGrown)
{
    // Asked before the index is read: where nobody writes, what is committed is in the index.
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

/// A look too many is better than a missed message; one before the commit would be too early.
bool GrowthDetector::reportUnknownGrowth()
{
    if (!waitingSince) {
        waitingSince = clock();
    }
    if (index.writeLock() != WalIndex::Lock::free && !hasExpired()) {
        return false;
    }
    waitingSince.reset();
    return true;
}

Uptime::duration GrowthDetector::pollInterval() const
{
    return pollIntervalAfter(clock() - waitingSince.value());
}

/// The index is read before and after the size, so that both are of the same commit and of a log
/// that was not restarted in between.
GrowthDetector::Snapshot GrowthDetector::takeSnapshot()
{
    Snapshot snapshot;
    for (int attempt = 0; attempt < maxSnapshotAttempts; ++attempt) {
        snapshot.index = index.read();
        // Asked before the size: where nobody is at work any more, the size is that after the cut.
        snapshot.isBeingRestarted = isBeingRestarted(snapshot.index);
        snapshot.size = sizeOf(descriptor);
        if (snapshot.index.state == WalIndex::State::absent || !snapshot.size) {
            return snapshot;
        }
        // And after it: the next writer may have begun in between, and the size be its own.
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

/// Where the system does not tell, for a while.
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

/// Whether it can be told yet if the log has grown. A log that is as long as before and restarted
/// was not cut, is about to be, or was cut and has grown to its old length: what its writer commits
/// will show it.
bool GrowthDetector::isDecided(const Snapshot& snapshot, bool hasGrown) const
{
    if (snapshot.index.state == WalIndex::State::changing) {
        return hasExpired();
    }
    return !snapshot.isBeingRestarted || hasGrown || *snapshot.size != knownEnd() ||
           isFull(snapshot);
}

/// Whether the log was neither cut nor restarted in between, so that `later` holds all of
/// `earlier`.
bool GrowthDetector::isSameLog(const Snapshot& earlier, const Snapshot& later)
{
    return later.size && *later.size >= *earlier.size && later.index.state == earlier.index.state &&
           (!later.isReadable() || later.index.header.salts == earlier.index.header.salts);
}

/// Where growth that was not reported begins: lower than before when the file was cut.
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
        // One that is full to its old end was cut and has grown again or was written over as a
        // whole, which cannot be told apart. A look too many is better than a missed message.
        const bool wasTruncated = *snapshot.size == knownEnd() && (isFull(snapshot) || hasGrown);
        startAt(wasTruncated ? 0 : knownEnd());
    }
    lastHeader = header;
}

/// Whether something may have been committed since the last look and then cut off. Of the commits
/// since then the new log holds at least one if it holds any. A log that was restarted twice may
/// have been cut the first time.
bool GrowthDetector::mayHaveLostCommit(const Snapshot& snapshot) const
{
    const WalIndex::Header& header = snapshot.index.header;
    const std::uint32_t commits = header.commits - lastHeader->commits;
    const bool mayBeCut =
        *snapshot.size < knownEnd() || *snapshot.size == 0 || header.restartsSince(*lastHeader) > 1;
    return mayBeCut && commits > (header.frames > 0 ? 1U : 0U);
}

/// How long the file was when it was last looked at, growth that waits included.
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

/// Whether the log ends in frames that a writer gave up, so that a commit may take their place.
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

/// Notes that growth is reported: that of `present` and what has come since, as far as it can be
/// read by now. The rest belongs to the next commit, which waits.
void GrowthDetector::reportUpTo(const Snapshot& snapshot)
{
    const bool isNewCommit = holdsNewCommit(snapshot);
    const bool hasGrownFromNothing = reportedSize == 0;
    const auto later = takeSnapshot();
    const Snapshot& latest = isSameLog(snapshot, later) ? later : snapshot;
    const std::int64_t commits =
        latest.isReadable() ? std::min(latest.index.header.committedBytes(), *latest.size) : 0;
    // Asked after the sizes: what has been written by then can be read once nobody writes.
    const bool isNextBeingWritten = index.writeLock() != WalIndex::Lock::free;
    reportedSize = isNextBeingWritten
                       ? std::max({reportedSize, commits, isNewCommit ? 0 : *snapshot.size})
                       : *latest.size;
    reportedCommits = commits;
    if (!latest.isReadable()) {
        reportedCommits = earlierLogEnd = reportedSize;
    } else {
        lastHeader = latest.index.header;
        // What was committed by then can be read now, also where the log has been restarted.
        if (later.isReadable()) {
            lastHeader->commits = later.index.header.commits;
        }
        // Behind the commits of a log that is not yet past its old end is what was there before;
        // so it is where the file was cut to a limit and not to nothing.
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
