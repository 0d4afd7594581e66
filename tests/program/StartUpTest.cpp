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

/// What the user's settings hold before the start, and after it.
class StoredAtTheStart : public testing::TestWithParam<std::pair<std::string, std::string>>
{};

TEST_P(StoredAtTheStart, AbsentPreferencesAreAddedAndTheLoginItemIsMade)
{
    ProgramSession session;
    if (!GetParam().first.empty()) {
        writeFile(session.preferences(), "[General]\n" + GetParam().first);
    }
    session.start();

    EXPECT_TRUE(await([&] { return std::filesystem::exists(session.autostartEntry()); }));
    EXPECT_EQ(contentOf(session.preferences()), "[General]\n" + GetParam().second);
    EXPECT_THAT(session.systemLog(), IsEmpty());
    EXPECT_EQ(session.program().errors(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Preferences,
    StoredAtTheStart,
    testing::Values(
        std::pair("", "capturingEnabled=true\nfourDigitInclude=true\nloginItemEnabled=true\n"),
        std::pair(
            "fourDigitInclude=false\nloginItemEnabled=false\n",
            "capturingEnabled=true\nfourDigitInclude=false\nloginItemEnabled=false\n")));

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

/// How the program ends that is given these arguments, where there is no display.
class Usage : public testing::Test
{
protected:
    ChildProcess::End run(const std::string& argument)
    {
        session.emplace(ProgramSession::Settings{
            .arguments = {argument},
            .environment = {
                {"DISPLAY", std::nullopt},
                {"QT_QPA_PLATFORM", "xcb"},
                {"WAYLAND_DISPLAY", std::nullopt}}});
        session->startProgram();
        return session->program().awaitEnd();
    }

    std::optional<ProgramSession> session;
};

TEST_F(Usage, VersionIsPrintedWithoutADisplay)
{
    EXPECT_EQ(run("--version").status, 0);
    EXPECT_THAT(session->program().output(), MatchesRegex("Orlimo [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(session->program().errors(), "");
}

TEST_F(Usage, UnknownArgumentIsRefusedBeforeAnythingIsStored)
{
    EXPECT_EQ(run("--bogus").status, 2);
    EXPECT_EQ(session->program().output(), "");
    EXPECT_THAT(session->program().errors(), HasSubstr("\"--bogus\""));
    EXPECT_FALSE(std::filesystem::exists(session->preferences()));
}

} // namespace
} // namespace orlimo
