#include "tests/fuzz/Statements.h"

#include <sqlite3.h>

namespace orlimo {

void finaliseStatements(sqlite3* connection)
{
    while (sqlite3_stmt* const statement = sqlite3_next_stmt(connection, nullptr)) {
        sqlite3_finalize(statement);
    }
}

} // namespace orlimo
