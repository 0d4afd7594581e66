#include "tests/platform/files/WriterProcess.h"

#include "tests/support/BuiltPrograms.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>

namespace orlimo {

WriterProcess::WriterProcess(
    const std::filesystem::path& store,
    const std::string& synchronous,
    const std::map<std::string, std::optional<std::string>>& environment)
    : process(
          ORLIMO_SAMPLE_STORE,
          {.arguments = {"serve", store, "--messages", "1", "--synchronous", synchronous},
           .environment = environment})
{
    EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
    // Some systems' SQLite cuts a long log by itself.
    sendCommand("sql PRAGMA journal_size_limit = -1");
}

void WriterProcess::sendCommand(const std::string& command)
{
    const std::string reply = process.ask(command);
    EXPECT_FALSE(reply.empty() || reply.starts_with("error")) << command << ": " << reply;
}

void WriterProcess::holdTransactionOpen()
{
    sendCommand("begin");
    sendCommand("text not yet committed");
    sendCommand("spill");
}

void WriterProcess::crash()
{
    process.signal(SIGKILL);
    (void)process.awaitEnd();
}

int visibleMessages(const std::filesystem::path& store)
{
    sqlite3* connection = nullptr;
    sqlite3_stmt* statement = nullptr;
    int number = -1;
    if (sqlite3_open_v2(store.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(connection, "SELECT count(*) FROM message", -1, &statement, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
    {
        number = sqlite3_column_int(statement, 0);
    }
    sqlite3_finalize(statement);
    sqlite3_close(connection);
    return number;
}

} // namespace orlimo
