#pragma once

#include <cstdint>
#include <optional>

namespace orlimo {

/// Tells whether an open file has changed since it was last looked at, by its size and by the time
/// of its last modification: growth after a truncation counts also where it ends at the size that
/// the file had.
class FileChangeDetector
{
public:
    /// For the file behind `fileDescriptor`, which stays the caller's.
    explicit FileChangeDetector(int fileDescriptor);

    /// Whether the file is not as it was at the last look. True at the first look, and for a file
    /// that cannot be asked.
    [[nodiscard]] bool hasChanged();

private:
    struct State
    {
        std::int64_t size;
        std::int64_t seconds;
        std::int64_t nanoseconds;
        [[nodiscard]] bool operator==(const State&) const = default;
    };

    [[nodiscard]] std::optional<State> currentState() const;

    int descriptor;
    std::optional<State> last;
};

} // namespace orlimo
