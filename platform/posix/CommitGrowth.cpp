#include "platform/posix/CommitGrowth.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// How long a writer that does not finish may hold an event up.
constexpr Uptime::duration longestWait = 1s;

/// How long to wait before the writer's lock is asked for again: an eighth of what it has taken so
/// far, so that the delay stays in proportion to the commit and a long commit costs few wake-ups.
Uptime::duration pauseAfter(Uptime::duration waited)
{
    return std::clamp<Uptime::duration>(waited / 8, 100us, 5ms);
}

} // namespace

CommitGrowth::CommitGrowth(
    const std::filesystem::path& log, Comparison hasGrownAgain, UptimeClock uptimeClock)
    : writeLock(log)
    , hasGrown(std::move(hasGrownAgain))
    , clock(std::move(uptimeClock))
{}

void CommitGrowth::note(Uptime time)
{
    if (!since) {
        since = time;
    }
}

Uptime::duration CommitGrowth::pause() const
{
    return pauseAfter(clock() - since.value());
}

bool CommitGrowth::settle(Uptime now)
{
    if (!since) {
        return false;
    }
    const bool expired = now - *since >= longestWait;
    if (!expired && writeLock.isHeldElsewhere()) {
        return false;
    }
    // The last of the commit's frames may have come between the look at the size and the look at
    // the lock. They belong to this event, unless the next commit is already under way.
    const bool nextMayHaveBegun = hasGrown() && writeLock.isHeldElsewhere();
    since = nextMayHaveBegun ? std::optional(clock()) : std::nullopt;
    return true;
}

} // namespace orlimo
