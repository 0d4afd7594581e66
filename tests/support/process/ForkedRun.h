#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orlimo {

/// How a piece of work that ran in a process of its own ended, and what it wrote.
struct ForkedRun
{
    /// The exit status; 0 when the work returned. Absent when a signal ended the process.
    std::optional<int> status;
    /// The signal that ended the process.
    std::optional<int> signal;
    /// Everything that was written to standard output.
    std::string output;
    /// Everything that was written to standard error.
    std::string errors;
};

/// Runs `work` in a fork of this process and waits for its end, which comes after a minute at the
/// latest. Whatever the work changes is lost with the child, a failed expectation included: judge
/// what comes back. Cheap enough to be called thousands of times.
[[nodiscard]] ForkedRun runForked(const std::function<void()>& work);

} // namespace orlimo
