#pragma once

#include "tests/support/process/ChildProcess.h"

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
        const std::map<std::string, std::optional<std::string>>& environment = {});

    /// Runs one command. One that fails is a test failure.
    void sendCommand(const std::string& command);

    /// Opens a transaction that has written to the log and holds the write lock.
    void holdTransactionOpen();

    /// Kills the process.
    void crash();

private:
    ChildProcess process;
};

/// How many messages a reader sees in the store now; -1 when it cannot read it.
[[nodiscard]] int visibleMessages(const std::filesystem::path& store);

} // namespace orlimo
