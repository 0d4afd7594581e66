#pragma once

#include <string_view>

namespace orlimo {

/// Writes one log line to standard output: `line`, byte for byte, and a line break, in one write,
/// so that it is there at once, also in a pipe or a file, and is never mixed with another thread's
/// line.
///
/// May be called on any thread. A reader that has gone away, or a full disk, loses the line and
/// nothing else.
void writeLogLine(std::string_view line);

} // namespace orlimo
