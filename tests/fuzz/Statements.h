#pragma once

struct sqlite3;

namespace orlimo {

/// Frees every statement that is compiled on `connection`. The program leaves them to the end of
/// its process; one that fetches without end has to be helped.
void finaliseStatements(sqlite3* connection);

} // namespace orlimo
