#pragma once

#include "tests/faults/FaultRow.h"

#include <string>
#include <vector>

namespace orlimo {

/// The rows about one thing that the program works with.
struct FaultGroup
{
    std::string name;
    std::vector<FaultRow> rows;
};

/// Every fault that is tried.
[[nodiscard]] const std::vector<FaultGroup>& faultTable();

} // namespace orlimo
