#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orlimo {

/// The socket of a service's output to systemd's journal, named by the variable JOURNAL_STREAM: see
/// systemd.exec(5). Programs whose output is redirected inherit the variable too.
class JournalStream
{
public:
    /// Reads the variable's value, "device:inode" in decimal. Absent where that is malformed.
    [[nodiscard]] static std::optional<JournalStream> parse(std::string_view value);

    /// Whether `descriptor` is that socket. False for one that cannot be examined. Any thread.
    [[nodiscard]] bool matches(int descriptor) const;

private:
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
};

} // namespace orlimo
