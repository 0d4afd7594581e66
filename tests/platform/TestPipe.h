#pragma once

#include "platform/posix/UniqueFd.h"
#include "tests/support/OpenPipe.h"

namespace orlimo {

/// A pipe, both ends of which wait.
struct TestPipe
{
    TestPipe()
    {
        const auto ends = openPipe();
        readEnd = UniqueFd(ends[0]);
        writeEnd = UniqueFd(ends[1]);
    }

    UniqueFd readEnd;
    UniqueFd writeEnd;
};

} // namespace orlimo
