#include "tests/scripts/FakePrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

/// The script that starts what was built, in a scratch folder of the test's own.
class RunTest : public testing::Test
{
protected:
    [[nodiscard]] CommandResult run(const std::vector<std::string>& arguments) const
    {
        return programs.run(
            "run",
            arguments,
            {{"ORLIMO_SAMPLE_MESSAGES", "3"},
             {"QT_QPA_PLATFORM", "offscreen"},
             {"TMPDIR", scratch.path()}});
    }

    FakePrograms programs;
    TemporaryFolder scratch;
};

TEST_F(RunTest, TheSampleEndsByItselfWithEveryCodeCaptured)
{
    const auto result = run({"--sample", "--built", ORLIMO_BUILD_FOLDER});
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(result.output, HasSubstr("[sample] "));
    const auto lastLine = result.output.substr(result.output.rfind("captured "));
    EXPECT_THAT(lastLine, MatchesRegex("captured ([0-9]+) of [0-9]+ codes\n"));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

TEST_F(RunTest, AStoreThatCannotBeListedIsNoReasonForTheSample)
{
    const auto folder = programs.path() / "home/Library/Messages";
    std::filesystem::create_directories(folder);
    programs.add("uname", "echo Linux");
    programs.add("ls", "exit 1"); // the superuser may list everything
    const auto result = programs.run(
        "run",
        {"--built", ORLIMO_BUILD_FOLDER},
        {{"HOME", programs.path() / "home"}, {"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("chmod u+rx \"" + folder.string() + "\""));
}

TEST_F(RunTest, HelpAndUsageErrorsStartNothing)
{
    programs.add("uname", "echo Linux");
    programs.add("cmake");
    const auto result = run({"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("Usage: ./run"));
    EXPECT_EQ(run({"--simple"}).status, 2);
    EXPECT_EQ(run({"--built"}).status, 2);
    EXPECT_EQ(programs.calls(), std::vector<std::string>(3, "uname -s"));
}

} // namespace
} // namespace orlimo
