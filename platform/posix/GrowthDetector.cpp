#include "platform/posix/GrowthDetector.h"

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
Uptime::duration pauseAfter(Uptime::duration waited)
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
    const auto present = takeSnapshot();
    if (!present.size) {
        throw std::system_error(errno, std::generic_category(), "cannot ask a file's size");
    }
    reportedSize = reportedCommits = *present.size;
    if (!present.isReadable()) {
        return;
    }
    lastHeader = present.index.header;
    // The commit that a writer is at work on is still to come, also when the log has grown by it.
    if (index.writeLock() == WalIndex::Lock::held) {
        reportedSize = std::min(reportedSize, lastHeader->committedBytes());
        reportedCommits = reportedSize;
    }
}

bool GrowthDetector::look(bool hasGrown)
{
    const auto present = takeSnapshot();
    if (!present.size) {
        return reportUnknownGrowth();
    }
    const bool decided = isDecided(present, hasGrown);
    if (decided) {
        moveStart(present, hasGrown);
        if (!holdsGrowth(present)) {
            waitingSince.reset();
            return false;
        }
    }
    if (!waitingSince) {
        waitingSince = clock();
    }
    if (!decided || mustWait(present)) {
        return false;
    }
    reportUpTo(present);
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

Uptime::duration GrowthDetector::pause() const
{
    return pauseAfter(clock() - waitingSince.value());
}

/// The index is read before and after the size, so that both are of the same commit and of a log
/// that was not begun anew in between.
GrowthDetector::Snapshot GrowthDetector::takeSnapshot()
{
    Snapshot present;
    for (int attempt = 0; attempt < maxSnapshotAttempts; ++attempt) {
        present.index = index.read();
        // Asked before the size: where nobody is at work any more, the size is that after the cut.
        present.isBeingBegunAnew = isBeingBegunAnew(present.index);
        present.size = sizeOf(descriptor);
        if (present.index.state == WalIndex::State::absent || !present.size) {
            return present;
        }
        const auto again = index.read();
        if (present.isReadable() && again.state == WalIndex::State::readable &&
            again.header == present.index.header)
        {
            return present;
        }
    }
    present.index.state = WalIndex::State::changing;
    return present;
}

bool GrowthDetector::isBeingBegunAnew(const WalIndex::Reading& reading)
{
    return reading.state == WalIndex::State::readable && lastHeader &&
           reading.header.salts != lastHeader->salts && index.writeLock() != WalIndex::Lock::free;
}

/// Whether commits fill the log to its end.
bool GrowthDetector::isFull(const Snapshot& present)
{
    return present.index.header.frames > 0 &&
           present.index.header.committedBytes() == *present.size;
}

/// Whether it can be told yet if the log has grown. A log that is as long as before and begun anew
/// was not cut, is about to be, or was cut and has grown to its old length: what its writer commits
/// will show it.
bool GrowthDetector::isDecided(const Snapshot& present, bool hasGrown) const
{
    if (present.index.state == WalIndex::State::changing) {
        return hasExpired();
    }
    return !present.isBeingBegunAnew || hasGrown || *present.size != reportedSize ||
           isFull(present);
}

/// Whether the log was neither cut nor begun anew in between, so that `later` holds all of
/// `earlier`.
bool GrowthDetector::isSameLog(const Snapshot& earlier, const Snapshot& later)
{
    return later.size && *later.size >= *earlier.size && later.index.state == earlier.index.state &&
           (!later.isReadable() || later.index.header.salts == earlier.index.header.salts);
}

/// Where growth that was not reported begins: lower than before when the file was cut.
void GrowthDetector::moveStart(const Snapshot& present, bool hasGrown)
{
    if (present.isReadable()) {
        moveStartOfStoreLog(present, hasGrown);
    } else if (*present.size < reportedSize || (hasGrown && *present.size == reportedSize)) {
        reportedSize = reportedCommits = hasGrown ? 0 : *present.size;
    }
}

void GrowthDetector::moveStartOfStoreLog(const Snapshot& present, bool hasGrown)
{
    const WalIndex::Header& header = present.index.header;
    const bool isBegunAnew = lastHeader && header.salts != lastHeader->salts;
    if (*present.size < reportedSize) {
        const bool hasNewCommit = header.frames > 0 && (!lastHeader || header != *lastHeader);
        const bool isBeingWritten = index.writeLock() != WalIndex::Lock::free;
        reportedSize = hasGrown || hasNewCommit || isBeingWritten ? 0 : *present.size;
        reportedCommits = reportedSize;
    } else if (isBegunAnew) {
        // One that is full to its old end was cut and has grown again or was written over as a
        // whole, which cannot be told apart. A look too many is better than a missed message.
        if (*present.size == reportedSize && (isFull(present) || hasGrown)) {
            reportedSize = 0;
        }
        reportedCommits = reportedSize;
    }
    lastHeader = header;
}

bool GrowthDetector::holdsGrowth(const Snapshot& present) const
{
    return *present.size > reportedSize ||
           (reportedCommits < reportedSize && holdsNewCommit(present));
}

bool GrowthDetector::holdsNewCommit(const Snapshot& present) const
{
    return present.isReadable() && present.index.header.committedBytes() > reportedCommits;
}

bool GrowthDetector::mustWait(const Snapshot& present)
{
    if (holdsNewCommit(present)) {
        return false;
    }
    switch (index.writeLock()) {
    case WalIndex::Lock::free:
        return present.index.state == WalIndex::State::changing && !hasExpired();
    case WalIndex::Lock::held:
        return present.isReadable() || !hasExpired();
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
void GrowthDetector::reportUpTo(const Snapshot& present)
{
    const bool isNewCommit = holdsNewCommit(present);
    const auto later = takeSnapshot();
    const Snapshot& latest = isSameLog(present, later) ? later : present;
    const std::int64_t commits =
        latest.isReadable() ? std::min(latest.index.header.committedBytes(), *latest.size) : 0;
    // Asked after the sizes: what has been written by then can be read once nobody writes.
    reportedSize = *latest.size;
    if (index.writeLock() != WalIndex::Lock::free) {
        reportedSize = isNewCommit ? commits : std::max(commits, *present.size);
    }
    const bool isGivenUp = latest.isReadable() && !isNewCommit;
    reportedCommits = isGivenUp ? std::min(commits, reportedSize) : reportedSize;
    if (latest.isReadable()) {
        lastHeader = latest.index.header;
    }
    waitingSince.reset();
    if (*latest.size > reportedSize) {
        waitingSince = clock();
    }
}

} // namespace orlimo
