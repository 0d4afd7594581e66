#pragma once

#include <cstdint>
#include <optional>

namespace orlimo {

/// Detects changes of an open file by its size and modification time: growth after a truncation
/// counts even if the file ends at its old size.
class FileChangeDetector
{
public:
    /// For the file behind `fileDescriptor`, which stays the caller's.
    explicit FileChangeDetector(int fileDescriptor);

    /// Whether the file has changed since the previous call. True at the first call, and when
    /// fstat() fails.
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
