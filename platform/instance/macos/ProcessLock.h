#pragma once

#include "platform/files/UniqueFd.h"

#include <filesystem>
#include <optional>

#include <sys/types.h>

namespace orlimo {

/// A lock on a file that one process at a time holds: given up with the object and, however the
/// process ends, with the process. Children of the process do not hold it. There may be one object
/// for a file in a process, which opens the file nowhere else: closing any descriptor of it would
/// give the lock up.
class ProcessLock
{
public:
    enum class Outcome {
        taken,
        heldByAnother,
        unavailable, ///< the file cannot be opened, or not be locked where it lies
    };

    /// `file` is created if missing, for its user alone, and stays.
    explicit ProcessLock(const std::filesystem::path& file);

    /// Takes the lock unless another process holds it. Does not wait.
    [[nodiscard]] Outcome take();

    /// The other process that holds it at this moment.
    [[nodiscard]] std::optional<pid_t> holder() const;

private:
    UniqueFd descriptor;
};

} // namespace orlimo
