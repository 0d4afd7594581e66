#pragma once

#include "platform/UptimeClock.h"
#include "platform/posix/StoreWriteLock.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace orlimo {

/// Decides when the growth of a file is delivered. The growth of a store's log waits for its
/// writer, so that the commit can be read and all growth that belongs to it is delivered at once; a
/// writer that does not finish holds it up for one second. Any other file's is delivered at once.
///
/// The host's source says what it notices and asks again after each pause. Used on one thread at a
/// time.
class CommitGrowth
{
public:
    /// Compares the file with how it was at the last comparison and tells whether it has grown.
    using Comparison = std::function<bool()>;

    /// For the file that was opened as `log`.
    CommitGrowth(
        const std::filesystem::path& log, Comparison hasGrownAgain, UptimeClock uptimeClock);

    /// Growth was noticed at `time`. What is noticed while growth waits belongs to it.
    void note(Uptime time);

    /// Whether growth waits to be delivered.
    [[nodiscard]] bool isWaiting() const { return since.has_value(); }

    /// How long to wait before asking again. Only while growth waits.
    [[nodiscard]] Uptime::duration pause() const;

    /// Whether the growth that waits, if any does, is to be delivered now. When it is, it waits no
    /// longer; but growth of the next commit may wait already.
    [[nodiscard]] bool settle(Uptime now);

private:
    StoreWriteLock writeLock;
    Comparison hasGrown;
    UptimeClock clock;
    std::optional<Uptime> since;
};

} // namespace orlimo
