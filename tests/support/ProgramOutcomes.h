#pragma once

#include <string>
#include <vector>

namespace orlimo {

/// Thrown instead of a fatal stop: in a program that is linked with this, fatalStop() does not end
/// the process, so that the stop is an outcome like any other.
struct FatalStopException
{
    std::string reason;
    std::string file; ///< the caller's
};

/// The program's log, kept in memory: in a program that is linked with this, writeLogLine() writes
/// nowhere else.
namespace logged {

/// Discards the lines written so far.
void clear();

/// The lines since then, in order.
[[nodiscard]] const std::vector<std::string>& lines();

} // namespace logged

} // namespace orlimo
