#pragma once

#include <string>

namespace orlimo {

/// Thrown instead of a fatal stop: in a program that is linked with this, fatalStop() does not end
/// the process, so that the stop is an outcome to be judged like any other.
struct FatalStopException
{
    std::string reason;
};

} // namespace orlimo
