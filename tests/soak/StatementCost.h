#pragma once

namespace orlimo {

/// How many bytes of memory one read of the newest messages keeps for good: what the statement that
/// it compiles takes, which stays with the connection to the end of the process. Measured here, on
/// a store of its own.
[[nodiscard]] long statementCost();

} // namespace orlimo
