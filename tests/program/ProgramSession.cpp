#include "tests/program/ProgramSession.h"

#include "tests/support/BuiltPrograms.h"
#include "tests/support/BuiltRecorder.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

#include <unistd.h>

namespace orlimo {

namespace {

/// A little more than the 1.6 seconds for which the program's throttle is closed.
constexpr std::chrono::milliseconds throttleInterval(1700);

} // namespace

std::vector<std::string> ProgramSession::startUpLines()
{
    return {
        "Database init",
        "database connected!!",
        "OrlimoApp init",
        "registFileObserver",
        "init file monitor",
        "file access allowed",
    };
}

ProgramSession::ProgramSession(Settings sessionSettings)
    : settings(std::move(sessionSettings))
{
    std::filesystem::create_directories(store().parent_path());
    std::filesystem::create_directories(home() / ".config");
    makePrivateFolder(home() / ".runtime");
    // The user who runs the test lives in this home.
    const std::string group = std::to_string(::getgid());
    writeFile(
        users() / "passwd",
        "user:x:" + std::to_string(::getuid()) + ":" + group + "::" + home().string() +
            ":/bin/sh\n");
    writeFile(users() / "group", "user:x:" + group + ":\n");
    if (settings.diskAccess == DiskAccess::granted) {
        std::filesystem::create_directories(home() / "Library/Containers/com.apple.stocks");
    }
}

void ProgramSession::start()
{
    startWriter();
    startProgram();
    for (const std::string& line : startUpLines()) {
        ASSERT_EQ(program().readLine(), line) << program().errors();
    }
    lastReaction = std::chrono::steady_clock::now();
}

void ProgramSession::startWriter()
{
    writerProcess = std::make_unique<ChildProcess>(
        ORLIMO_SAMPLE_STORE,
        ChildSettings{
            .arguments =
                {"serve",
                 store().string(),
                 "--synchronous",
                 settings.synchronous,
                 "--messages",
                 std::to_string(settings.messages)},
            .environment = settings.writerEnvironment,
        });
    ASSERT_TRUE(writer().awaitLine("ready")) << writer().errors();
}

void ProgramSession::startProgram()
{
    std::vector<std::string> command = settings.launcher;
    command.emplace_back(ORLIMO_PROGRAM);
    command.insert(command.end(), settings.arguments.begin(), settings.arguments.end());
    programProcess = std::make_unique<ChildProcess>(
        command.front(),
        ChildSettings{
            .arguments = {command.begin() + 1, command.end()},
            .environment = environment(),
            .beforeStart = settings.beforeStart,
        });
}

std::map<std::string, std::optional<std::string>> ProgramSession::environment() const
{
    auto variables = preloadEnvironment({"libnss_wrapper.so", ORLIMO_SYSLOG_RECORDER});
    variables.insert({
        {"HOME", home().string()},
        {"NSS_WRAPPER_GROUP", (users() / "group").string()},
        {"NSS_WRAPPER_PASSWD", (users() / "passwd").string()},
        {"ORLIMO_RECORDED_SYSLOG", recordedLog().string()},
        {"XDG_CONFIG_HOME", (home() / ".config").string()},
        {"XDG_RUNTIME_DIR", (home() / ".runtime").string()},
    });
    for (const auto& [variable, value] : settings.environment) {
        variables[variable] = value;
    }
    return variables;
}

std::vector<std::string> ProgramSession::systemLog() const
{
    return std::filesystem::exists(recordedLog()) ? linesOf(contentOf(recordedLog()))
                                                  : std::vector<std::string>{};
}

void ProgramSession::deliver(const std::string& command)
{
    const std::string response = writer().ask(command);
    EXPECT_TRUE(response.starts_with("committed")) << command << ": " << response;
}

void ProgramSession::awaitOpenThrottle() const
{
    // The program accepted the last call before its line was seen here, so that its throttle is
    // open by then however slow the machine is.
    std::this_thread::sleep_until(lastReaction + throttleInterval);
}

void ProgramSession::waitForThrottle()
{
    std::this_thread::sleep_for(throttleInterval);
}

std::vector<std::string> ProgramSession::readReaction()
{
    std::vector<std::string> lines;
    while (const auto line = program().readLine()) {
        lines.push_back(*line);
        if (line->starts_with(reactionPrefix)) {
            break;
        }
    }
    lastReaction = std::chrono::steady_clock::now();
    return lines;
}

std::vector<std::string>
ProgramSession::reactionTo(const std::string& text, const std::string& code)
{
    return {
        "ready to access disk",
        text,
        "Found numbers: [\"" + code + "\"]",
        reactionPrefix + code,
    };
}

} // namespace orlimo
