#pragma once

#include <string>

namespace orlimo {

/// Every fault that is tried, with what becomes of it, as it stands in the documentation.
[[nodiscard]] std::string faultDocument();

} // namespace orlimo
