#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/support/process/OpenPipe.h"

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
