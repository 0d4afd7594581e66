#pragma once

#include <cstdint>

namespace orlimo {

/// Tells growth of an open file from every other change, by comparing its size with the one seen
/// last. A shrink lowers the remembered size, so that growth after a truncation counts again.
class GrowthMeter
{
public:
    /// Remembers the present size of the file behind `fileDescriptor`, which stays the caller's and
    /// open for the meter's life. Throws std::system_error when the size cannot be asked.
    explicit GrowthMeter(int fileDescriptor);

    /// Whether the file is longer than when it was last looked at. A file whose size cannot be
    /// asked counts as grown.
    [[nodiscard]] bool hasGrown();

private:
    int descriptor;
    std::int64_t size = 0;
};

} // namespace orlimo
