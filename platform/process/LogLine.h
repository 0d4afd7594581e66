#pragma once

#include <string_view>

namespace orlimo {

/// Writes one log line to standard output: `line`, byte for byte, and a line break, in one
/// unbuffered write that is never mixed with another thread's. Nothing is written to systemd's
/// journal, which is persistent and readable by administrators: lines hold whole message texts.
///
/// Any thread; the first call must be the main thread's. A line that cannot be written, to a closed
/// pipe or a full disk, is dropped.
void writeLogLine(std::string_view line);

} // namespace orlimo
