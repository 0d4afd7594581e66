#include "tests/capture/stores/OpenedConnections.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>

#include <dlfcn.h>

namespace orlimo {

namespace {

std::vector<sqlite3*>& seen()
{
    static std::vector<sqlite3*> connections;
    return connections;
}

bool listening = false;

} // namespace

OpenedConnections::OpenedConnections()
{
    seen().clear();
    listening = true;
}

OpenedConnections::~OpenedConnections()
{
    listening = false;
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

void finaliseStatements(sqlite3* connection)
{
    while (sqlite3_stmt* const statement = sqlite3_next_stmt(connection, nullptr)) {
        sqlite3_finalize(statement);
    }
}

} // namespace orlimo

/// Takes precedence over the library's function of the same name, in this program only.
int sqlite3_open_v2(const char* name, sqlite3** connection, int flags, const char* system)
{
    using Function = int (*)(const char*, sqlite3**, int, const char*);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sqlite3_open_v2"));
    const int result = real(name, connection, flags, system);
    if (orlimo::listening && *connection != nullptr) {
        orlimo::seen().push_back(*connection);
    }
    return result;
}
