#include "tests/capture/OpenedConnections.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>

namespace orlimo {

namespace {

std::vector<sqlite3*>& seen()
{
    static std::vector<sqlite3*> connections;
    return connections;
}

extern "C" int
remember(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*routines*/)
{
    seen().push_back(connection);
    return SQLITE_OK;
}

/// What SQLite wants to be given, whatever the function's arguments are.
using EntryPoint = void (*)();

EntryPoint entryPoint()
{
    return reinterpret_cast<EntryPoint>(&remember);
}

} // namespace

OpenedConnections::OpenedConnections()
{
    seen().clear();
    EXPECT_EQ(sqlite3_auto_extension(entryPoint()), SQLITE_OK);
}

OpenedConnections::~OpenedConnections()
{
    EXPECT_EQ(sqlite3_cancel_auto_extension(entryPoint()), 1);
    seen().clear();
}

sqlite3* OpenedConnections::only() const
{
    EXPECT_EQ(seen().size(), 1U);
    return seen().size() == 1 ? seen().front() : nullptr;
}

std::vector<std::string> statementsOn(sqlite3* connection)
{
    std::vector<std::string> texts;
    for (sqlite3_stmt* statement = sqlite3_next_stmt(connection, nullptr); statement != nullptr;
         statement = sqlite3_next_stmt(connection, statement))
    {
        texts.emplace_back(sqlite3_sql(statement));
    }
    std::reverse(texts.begin(), texts.end());
    return texts;
}

} // namespace orlimo
