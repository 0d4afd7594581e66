#include "tests/platform/files/WriterProcess.h"

#include "tests/support/BuiltPrograms.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <cstdlib>

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
    int number = -1;
    const auto readRow = [](void* result, int, char** columns, char**) {
        *static_cast<int*>(result) = static_cast<int>(std::strtol(columns[0], nullptr, 10));
        return 0;
    };
    (void)sqlite3_open_v2(store.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
    (void)sqlite3_exec(connection, "SELECT count(*) FROM message", readRow, &number, nullptr);
    sqlite3_close(connection);
    return number;
}

} // namespace orlimo
