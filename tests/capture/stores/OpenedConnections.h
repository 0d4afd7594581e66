#pragma once

#include <string>
#include <vector>

struct sqlite3;

namespace orlimo {

/// Records every SQLite connection that sqlite3_open_v2 opens while it lives. One at a time.
class OpenedConnections
{
public:
    OpenedConnections();
    OpenedConnections(const OpenedConnections&) = delete;
    OpenedConnections& operator=(const OpenedConnections&) = delete;
    ~OpenedConnections();

    /// The one connection that was opened so far; a test failure when there are more or none.
    [[nodiscard]] sqlite3* only() const;
};

/// The texts of the statements that are compiled on `connection` and not finalised, oldest first.
[[nodiscard]] std::vector<std::string> statementsOn(sqlite3* connection);

/// Frees every statement that is compiled on `connection`. The program leaves them allocated until
/// its process ends; a test that fetches without end must not.
void finaliseStatements(sqlite3* connection);

} // namespace orlimo
