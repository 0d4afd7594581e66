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
    /// How many messages; endless if absent.
    std::optional<long> count{};
    /// Where to record the codes that should be copied, one a line, each when its message is
    /// delivered.
    std::optional<std::filesystem::path> expected{};
    /// Begin each interval only when a line of input has arrived, and end with the input: the
    /// writer of the lines decides when a message has been handled.
    bool paced = false;
    /// The log is truncated to zero when it is longer than this, in bytes, so that a long run does
    /// not fill the disk.
    std::uintmax_t maxLogSize = 16'777'216;
};

/// Delivers messages of the sample cycle to `store` as `options` says: writes "ready" to `output`,
/// then a line for each message once it is committed. Throws if the store or the file of codes
/// cannot be written.
void deliver(
    SampleStore& store, const DeliveryOptions& options, std::istream& input, std::ostream& output);

} // namespace orlimo::sample
