#pragma once

#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace orlimo {

/// Another process that writes a message store, in transactions under the test's control.
class WriterProcess
{
public:
    /// Creates the store, with one message in it, and keeps it open. `environment` is added to this
    /// process's.
    explicit WriterProcess(
        const std::filesystem::path& store,
        const std::string& synchronous = "full",
        const std::map<std::string, std::optional<std::string>>& environment = {})
        : process(
              ORLIMO_SAMPLE_STORE,
              {.arguments = {"serve", store, "--messages", "1", "--synchronous", synchronous},
               .environment = environment})
    {
        EXPECT_TRUE(process.awaitLine("ready")) << process.errors();
        // Some systems' SQLite cuts a long log by itself.
        sendCommand("sql PRAGMA journal_size_limit = -1");
    }

    /// Runs one command. One that fails is a test failure.
    void sendCommand(const std::string& command)
    {
        const std::string reply = process.ask(command);
        EXPECT_FALSE(reply.empty() || reply.starts_with("error")) << command << ": " << reply;
    }

    /// Opens a transaction that has written to the log and holds the write lock.
    void holdTransactionOpen()
    {
        sendCommand("begin");
        sendCommand("text not yet committed");
        sendCommand("spill");
    }

    void crash()
    {
        process.signal(SIGKILL);
        (void)process.awaitEnd();
    }

private:
    ChildProcess process;
};

/// How many messages a reader sees in the store now; -1 when it cannot read it.
[[nodiscard]] inline int visibleMessages(const std::filesystem::path& store)
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
