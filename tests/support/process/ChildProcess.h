#pragma once

#include "tests/support/Await.h"

#include <QProcess>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// How a child process is started.
struct ChildSettings
{
    std::vector<std::string> arguments{};
    /// Variables to set, or to take away where the value is absent, beside those of this process.
    std::map<std::string, std::optional<std::string>> environment{};
    /// Runs in the child, right before the program starts. Only what is safe after a fork.
    std::function<void()> beforeStart{};
};

/// A program that a test runs beside itself, with its streams on pipes. Killed when the object
/// goes.
class ChildProcess
{
public:
    /// How a process ended: its exit status, or the signal that killed it.
    struct End
    {
        std::optional<int> status;
        std::optional<int> signal;
    };

    /// Starts `program`. A start that fails is a test failure.
    explicit ChildProcess(const std::filesystem::path& program, const ChildSettings& settings = {});
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits for the next line of standard output that was not read yet. Absent at the end of the
    /// output or after `limit`.
    [[nodiscard]] std::optional<std::string>
    readLine(std::chrono::milliseconds limit = defaultTimeout);

    /// Reads lines until one is exactly `line`. False when none comes.
    [[nodiscard]] bool
    awaitLine(const std::string& line, std::chrono::milliseconds limit = defaultTimeout);

    /// Writes `text`, or `line` and a line break, to the program's standard input.
    void write(const std::string& text);
    void writeLine(const std::string& line) { write(line + "\n"); }

    /// Writes `command` and returns the line with which the program responds.
    [[nodiscard]] std::string ask(const std::string& command);

    /// Ends the program's standard input.
    void closeInput() { process.closeWriteChannel(); }

    /// Everything that came on standard output so far, read as lines or not.
    [[nodiscard]] const std::string& output()
    {
        pump();
        return outputSoFar;
    }
    [[nodiscard]] const std::string& errors()
    {
        pump();
        return errorsSoFar;
    }

    [[nodiscard]] bool isRunning();
    [[nodiscard]] pid_t processId() const { return pid; }
    void signal(int number) const;

    /// Waits for the end of the process. False when it does not come within `limit`.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds limit);

    /// Waits for the end of the process; a test failure when it does not come.
    End awaitEnd(std::chrono::milliseconds limit = defaultTimeout);

    /// Ends the process with SIGTERM and returns how it ended.
    End terminate()
    {
        signal(SIGTERM);
        return awaitEnd();
    }

private:
    /// Takes in what has come on both streams, and waits for some as long as that.
    void pump(std::chrono::milliseconds span = std::chrono::milliseconds(0));

    QProcess process;
    std::string outputSoFar;
    std::string errorsSoFar;
    std::size_t readUpTo = 0;
    pid_t pid = 0;
    std::filesystem::path name;
};

/// What came of a tool that ran to its end.
struct ToolResult
{
    /// Absent where it did not end by itself in time, which `errors` then says.
    std::optional<int> status;
    std::string output;
    std::string errors;
};

/// Runs a tool that is not ours with `input` as its standard input. It is killed after ten seconds.
[[nodiscard]] ToolResult runTool(
    const std::filesystem::path& program,
    const ChildSettings& settings,
    const std::string& input = "");

} // namespace orlimo
