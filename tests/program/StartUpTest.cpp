#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <grp.h>
#include <unistd.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

/// Waits until the program has printed `count` lines and then, for it has nothing more to say, ends
/// it.
std::vector<std::string> firstLines(ChildProcess& program, std::size_t count)
{
    while (linesOf(program.output()).size() < count && program.readLine()) {
    }
    EXPECT_EQ(program.terminate().signal, SIGTERM);
    return linesOf(program.output());
}

TEST(StartUp, WithoutAMessagesFolderSaysSoStaysAliveAndMakesNone)
{
    const TemporaryFolder home;
    ChildProcess program(
        ORLIMO_PROGRAM,
        {
            .environment =
                {{"HOME", home.path().string()},
                 {"XDG_CONFIG_HOME", (home.path() / ".config").string()}},
        });

    EXPECT_THAT(
        firstLines(program, 6),
        ElementsAre(
            "Database init",
            "database connection:  unable to open database file",
            "OrlimoApp init",
            "registFileObserver",
            "init file monitor",
            "file access not allowed"));
    EXPECT_FALSE(std::filesystem::exists(home.path() / "Library"));
}

TEST(StartUp, WithoutALogIsRefusedAccess)
{
    ProgramSession session;
    session.startProgram();

    EXPECT_THAT(
        firstLines(session.program(), 6),
        ElementsAre(
            "Database init",
            "database connected!!",
            "OrlimoApp init",
            "registFileObserver",
            "init file monitor",
            "file access not allowed"));
}

TEST(StartUp, OnAStoreWatchesItsLog)
{
    ProgramSession session;
    session.startWriter();
    session.startProgram();

    EXPECT_THAT(
        firstLines(session.program(), ProgramSession::startUpLines().size()),
        ElementsAreArray(ProgramSession::startUpLines()));
    EXPECT_EQ(session.program().errors(), "");
}

TEST(StartUp, FirstLaunchStoresEveryPreference)
{
    ProgramSession session;
    session.start();

    const auto stored = [&session] {
        return std::filesystem::exists(session.preferences()) &&
               linesOf(contentOf(session.preferences())).size() == 4;
    };
    ASSERT_TRUE(await(stored));
    EXPECT_THAT(
        linesOf(contentOf(session.preferences())),
        ElementsAre(
            "[General]",
            "capturingEnabled=true",
            "fourDigitInclude=true",
            "loginItemEnabled=true"));
}

TEST(StartUp, StoredPreferencesAreKept)
{
    ProgramSession session;
    writeFile(session.preferences(), "[General]\nfourDigitInclude=false\n");
    session.start();

    const auto stored = [&session] {
        return linesOf(contentOf(session.preferences())).size() == 4;
    };
    ASSERT_TRUE(await(stored));
    EXPECT_THAT(
        linesOf(contentOf(session.preferences())),
        ElementsAre(
            "[General]",
            "capturingEnabled=true",
            "fourDigitInclude=false",
            "loginItemEnabled=true"));
}

TEST(StartUp, GarbageInThePreferencesIsKeptInACopy)
{
    const std::string garbage = std::string("\x01\x02\xFF no preferences", 18) + "\n[broken\n";
    ProgramSession session;
    writeFile(session.preferences(), garbage);
    session.start();

    const auto stored = [&session] {
        return contentOf(session.preferences()).find("loginItemEnabled=true") != std::string::npos;
    };
    ASSERT_TRUE(await(stored));
    EXPECT_EQ(contentOf(session.preferences().string() + ".damaged"), garbage);
    EXPECT_THAT(session.program().errors(), HasSubstr("Orlimo.conf.damaged"));
}

TEST(StartUp, WithoutAnyHomeStops)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can run the program as a user without an entry";
    }
    if (!canOthersReach(ORLIMO_PROGRAM)) {
        GTEST_SKIP() << "other users may not enter the folder in which the program was built";
    }
    ChildProcess program(
        ORLIMO_PROGRAM,
        {.environment = {{"HOME", std::nullopt}, {"XDG_CONFIG_HOME", "/nonexistent"}},
         .beforeStart = [] {
             constexpr uid_t unknownUser = 54321;
             if (::setgroups(0, nullptr) != 0 || ::setuid(unknownUser) != 0) {
                 ::_exit(1);
             }
         }});

    EXPECT_EQ(program.awaitEnd().signal, SIGABRT);
    EXPECT_THAT(
        linesOf(program.output()),
        ElementsAre(
            "Database init", "database connected!!", "OrlimoApp init", "registFileObserver"));
    EXPECT_THAT(program.errors(), HasSubstr("capture/Message.cpp"));
    EXPECT_THAT(program.errors(), HasSubstr("the user has no Library folder"));
}

TEST(StartUp, StreamsClosedAtTheStartNeverReachTheStore)
{
    ProgramSession session({.beforeStart = [] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    }});
    session.startWriter();
    const std::string before = contentOf(session.store());
    session.startProgram();

    ASSERT_TRUE(await([&session] { return std::filesystem::exists(session.preferences()); }));
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_EQ(contentOf(session.store()), before);
}

} // namespace
} // namespace orlimo
