#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A home of its own with a message store, a writer process instead of the Messages application,
/// and the built program watching. For the program, that home is the one in the user database too,
/// and what it sends to the system's log is kept in a file.
class ProgramSession
{
public:
    /// Whether there is the folder whose listing shows the program that it was granted access.
    enum class DiskAccess {
        granted,
        folderMissing,
    };

    struct Settings
    {
        /// How the writer syncs: FULL, NORMAL or OFF.
        std::string synchronous = "NORMAL";
        /// The writer's, beside this process's own.
        std::map<std::string, std::optional<std::string>> writerEnvironment{};
        /// How many messages the store holds at the start.
        int messages = 0;
        DiskAccess diskAccess = DiskAccess::granted;
        /// The program's own.
        std::vector<std::string> arguments{};
        std::map<std::string, std::optional<std::string>> environment{};
        std::function<void()> beforeStart{};
        /// What the program is started by: a command that runs the one after it. None: itself.
        std::vector<std::string> launcher{};
    };

    /// Makes the home and starts nothing.
    ProgramSession()
        : ProgramSession(Settings{})
    {}
    explicit ProgramSession(Settings sessionSettings);

    /// Starts the writer and then the program, and waits until the program watches the log.
    void start();

    /// Starts the writer alone: the store and its log exist from then on.
    void startWriter();

    void startProgram();

    /// Has the writer carry out a command that stores a message, and returns when it is committed.
    void deliver(const std::string& command);

    /// Waits until the program's throttle is open again, counted from the last reaction that was
    /// seen.
    void awaitOpenThrottle() const;

    /// The same counted from now, after a reaction that `readReaction` did not read.
    static void waitForThrottle();

    /// Reads the program's lines up to its next reaction, the line that names the copied code, and
    /// returns all of them. What was read until then when there is none.
    [[nodiscard]] std::vector<std::string> readReaction();

    /// The lines of a reaction to a newest message with `text` in the text column.
    [[nodiscard]] static std::vector<std::string>
    reactionTo(const std::string& text, const std::string& code);

    [[nodiscard]] std::filesystem::path home() const { return folder.path() / "home"; }
    [[nodiscard]] std::filesystem::path store() const
    {
        return home() / "Library/Messages/chat.db";
    }
    [[nodiscard]] std::filesystem::path log() const
    {
        return home() / "Library/Messages/chat.db-wal";
    }
    [[nodiscard]] std::filesystem::path preferences() const
    {
        return home() / ".config/Orlimo/Orlimo.conf";
    }

    /// What has the program started at login.
    [[nodiscard]] std::filesystem::path autostartEntry() const
    {
        return home() / ".config/autostart/app.orlimo.Orlimo.desktop";
    }

    /// What the program has sent to the system's log, each entry led by its priority with its
    /// facility, as a number.
    [[nodiscard]] std::vector<std::string> systemLog() const;

    [[nodiscard]] ChildProcess& writer() { return *writerProcess; }
    [[nodiscard]] ChildProcess& program() { return *programProcess; }

    /// What the program prints while it starts on a store that it may watch.
    [[nodiscard]] static std::vector<std::string> startUpLines();

    /// What the line that names a copied code begins with.
    static constexpr const char* reactionPrefix = "file changed!! at message: code? ";

private:
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    [[nodiscard]] std::filesystem::path users() const { return folder.path() / "users"; }
    [[nodiscard]] std::filesystem::path recordedLog() const { return folder.path() / "syslog"; }

    TemporaryFolder folder;
    Settings settings;
    std::unique_ptr<ChildProcess> writerProcess;
    std::unique_ptr<ChildProcess> programProcess;
    std::chrono::steady_clock::time_point lastReaction = std::chrono::steady_clock::now();
};

} // namespace orlimo
