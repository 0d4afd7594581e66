#pragma once

#include <string>
#include <vector>

/// The program's log, kept in memory: in a program that is linked with this, writeLogLine() writes
/// nowhere else.
namespace orlimo::logged {

/// Forgets the lines written so far.
void clear();

/// The lines since then, in order.
[[nodiscard]] const std::vector<std::string>& lines();

} // namespace orlimo::logged
