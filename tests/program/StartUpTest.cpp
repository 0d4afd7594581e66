#include "tests/program/ProgramSession.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

TEST(StartUp, WithoutMessagesFolderSaysSoStaysAliveAndMakesNone)
{
    ProgramSession session;
    std::filesystem::remove(session.store().parent_path());
    session.startProgram();

    EXPECT_TRUE(session.program().awaitLine("file access not allowed"));
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_THAT(
        linesOf(session.program().output()),
        ElementsAre(
            "Database init",
            "database connection:  unable to open database file",
            "OrlimoApp init",
            "registFileObserver",
            "init file monitor",
            "file access not allowed"));
    EXPECT_FALSE(std::filesystem::exists(session.store().parent_path()));
}

TEST(StartUp, AddsAbsentPreferencesAndMakesTheLoginItem)
{
    const std::string stored = "[General]\nfourDigitInclude=false\nloginItemEnabled=false\n";
    for (const bool isFirstStart : {true, false}) {
        ProgramSession session;
        if (!isFirstStart) {
            writeFile(session.preferences(), stored);
        }
        session.start();

        EXPECT_TRUE(await([&] { return std::filesystem::exists(session.autostartEntry()); }));
        EXPECT_EQ(
            contentOf(session.preferences()),
            isFirstStart
                ? "[General]\ncapturingEnabled=true\nfourDigitInclude=true\nloginItemEnabled=true\n"
                : "[General]\ncapturingEnabled=true\nfourDigitInclude=false\n"
                  "loginItemEnabled=false\n");
        EXPECT_THAT(session.systemLog(), IsEmpty());
        EXPECT_EQ(session.program().errors(), "");
    }
}

TEST(StartUp, StreamsClosedAtTheStartAreNeverThoseOfTheStore)
{
    ProgramSession session({.beforeStart = [] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    }});
    session.startProgram();
    ASSERT_TRUE(await([&session] { return std::filesystem::exists(session.preferences()); }));
    const std::filesystem::path folder =
        "/proc/" + std::to_string(session.program().processId()) + "/fd";
    for (const char* descriptor : {"0", "1", "2"}) {
        EXPECT_EQ(std::filesystem::read_symlink(folder / descriptor), "/dev/null");
    }
}

TEST(StartUp, WithoutADisplayPrintsVersionAndRefusesUnknownArgument)
{
    const auto run = [](const std::string& argument) {
        // Without a display, Qt would end the program when it starts.
        ProgramSession session(
            {.arguments = {argument}, .environment = {{"QT_QPA_PLATFORM", "xcb"}}});
        session.startProgram();
        const auto end = session.program().awaitEnd();
        EXPECT_FALSE(std::filesystem::exists(session.preferences()));
        return ToolResult{end.status, session.program().output(), session.program().errors()};
    };
    const ToolResult version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, MatchesRegex("Orlimo [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(version.errors, "");
    const ToolResult refused = run("--bogus");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, HasSubstr("\"--bogus\""));
}

} // namespace
} // namespace orlimo
