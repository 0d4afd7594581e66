#pragma once

#include "tests/fuzz/StoredRow.h"

#include <string>
#include <vector>

namespace orlimo {

/// What a check makes of a store: a second implementation, kept plain on purpose, to judge the
/// program's own by.
struct ReferenceCheck
{
    /// What is published; empty when a fatal stop comes before.
    std::string verificationCode;
    bool isFatal = false;
    /// What the log is to show.
    std::vector<std::string> lines;
};

/// Of a store that holds `rows`, inserted in this order.
[[nodiscard]] ReferenceCheck
referenceCheck(const std::vector<StoredRow>& rows, bool withFourDigits);

} // namespace orlimo
