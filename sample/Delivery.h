#pragma once

#include "sample/SampleStore.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>

namespace orlimo::sample {

/// How messages are delivered over time.
struct DeliveryOptions
{
    std::chrono::duration<double> interval{2.0};
    /// How many messages; without end where absent.
    std::optional<long> count{};
    /// Where to note the codes that are to be copied, one a line, each when its message is
    /// delivered.
    std::optional<std::filesystem::path> expected{};
    /// Begin each interval only when a line of input has come, and end with the input: whoever
    /// writes the lines says when a message has been dealt with.
    bool paced = false;
    /// The log is cut to nothing when it has become longer than this, in bytes, so that a long run
    /// does not fill the disk.
    std::uintmax_t maxLogSize = 16'777'216;
};

/// Delivers messages of the sample cycle to `store` as `plan` says: "ready" to `output`, then a
/// line for each message once it is committed. Throws when the store or the file of codes cannot be
/// written.
void deliver(
    SampleStore& store, const DeliveryOptions& options, std::istream& input, std::ostream& output);

} // namespace orlimo::sample
