#include "tests/program/ProgramSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

/// The program asked for something that needs no display, where there is none.
class Usage : public testing::Test
{
protected:
    ChildProcess& run(const std::vector<std::string>& arguments)
    {
        session.emplace(ProgramSession::Settings{
            .arguments = arguments,
            .environment =
                {{"DISPLAY", std::nullopt},
                 {"QT_QPA_PLATFORM", "xcb"},
                 {"WAYLAND_DISPLAY", std::nullopt}},
        });
        session->startProgram();
        return session->program();
    }

    std::optional<ProgramSession> session;
};

TEST_F(Usage, HelpIsPrinted)
{
    ChildProcess& program = run({"--help"});
    EXPECT_EQ(program.awaitEnd().status, 0);
    EXPECT_THAT(program.output(), HasSubstr("Usage: orlimo"));
    EXPECT_THAT(program.output(), HasSubstr("--launched-at-login"));
    EXPECT_EQ(program.errors(), "");
}

TEST_F(Usage, VersionIsPrinted)
{
    ChildProcess& program = run({"--version"});
    EXPECT_EQ(program.awaitEnd().status, 0);
    EXPECT_THAT(program.output(), MatchesRegex("Orlimo [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(program.errors(), "");
}

TEST_F(Usage, AnythingElseIsRefused)
{
    for (const char* argument : {"--bogus", "code", "-x", ""}) {
        ChildProcess& program = run({argument});
        EXPECT_EQ(program.awaitEnd().status, 2) << argument;
        EXPECT_EQ(program.output(), "") << argument;
        EXPECT_THAT(program.errors(), HasSubstr('"' + std::string(argument) + '"'));
        EXPECT_THAT(program.errors(), HasSubstr("orlimo --help"));
        EXPECT_FALSE(std::filesystem::exists(session->preferences())) << argument;
    }
}

} // namespace
} // namespace orlimo
