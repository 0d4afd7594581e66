#pragma once

#include <string_view>

namespace orlimo {

/// Writes one log line to standard output: `line`, byte for byte, and a line break, in one write,
/// so that it is there at once, also in a pipe or a file, and is never mixed with another thread's
/// line. Where standard output is systemd's journal, which keeps what it gets for long and shows it
/// to administrators, nothing is written: lines hold whole message texts.
///
/// May be called on any thread; the first call is the main thread's. A reader that has gone away,
/// or a full disk, loses the line and nothing else.
void writeLogLine(std::string_view line);

} // namespace orlimo
