#include "tests/app/ProgramSession.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

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

ProgramSession::ProgramSession()
    : ProgramSession(Settings{})
{}

ProgramSession::ProgramSession(Settings sessionSettings)
    : settings(std::move(sessionSettings))
    , lastReaction(std::chrono::steady_clock::now())
{
    std::filesystem::create_directories(store().parent_path());
    std::filesystem::create_directories(home() / ".config");
    std::filesystem::create_directories(home() / ".runtime");
    std::filesystem::permissions(home() / ".runtime", std::filesystem::perms::owner_all);
}

void ProgramSession::start()
{
    startWriter();
    startProgram();
    std::vector<std::string> lines;
    while (lines.size() < startUpLines().size()) {
        const auto line = program().readLine();
        ASSERT_TRUE(line) << "the program ended: " << program().errors();
        lines.push_back(*line);
    }
    ASSERT_EQ(lines, startUpLines());
    didReact();
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
        });
    ASSERT_TRUE(writer().awaitLine("ready")) << writer().errors();
}

void ProgramSession::startProgram()
{
    ChildSettings childSettings{
        .environment =
            {{"HOME", home().string()},
             {"XDG_CONFIG_HOME", (home() / ".config").string()},
             {"XDG_RUNTIME_DIR", (home() / ".runtime").string()}},
        .beforeStart = settings.beforeStart,
    };
    for (const auto& [variable, value] : settings.environment) {
        childSettings.environment[variable] = value;
    }
    programProcess = std::make_unique<ChildProcess>(ORLIMO_PROGRAM, childSettings);
}

void ProgramSession::deliver(const std::string& command)
{
    const std::string answer = writer().ask(command);
    EXPECT_TRUE(answer.starts_with("committed")) << command << ": " << answer;
}

void ProgramSession::awaitOpenThrottle() const
{
    // The program accepted the last call before its line was seen here, so that its throttle is
    // open by then however slow the machine is.
    std::this_thread::sleep_until(lastReaction + throttleInterval);
}

void ProgramSession::waitThrottleOut()
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
    didReact();
    return lines;
}

std::vector<std::string>
ProgramSession::reactionTo(const std::string& words, const std::string& code)
{
    return {
        "ready to access disk",
        words,
        "Found numbers: [\"" + code + "\"]",
        reactionPrefix + code,
    };
}

void ProgramSession::didReact()
{
    lastReaction = std::chrono::steady_clock::now();
}

} // namespace orlimo
