#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

/// The program in the desktop's autostart folder, as its start leaves it.
class LoginItem : public testing::Test
{
protected:
    [[nodiscard]] bool awaitMade()
    {
        return awaitWithPolling(
            [this] { return std::filesystem::exists(program.session().autostartEntry()); });
    }

    DesktopProgram program;
};

TEST_F(LoginItem, IsMadeAtTheFirstStart)
{
    program.start();
    EXPECT_TRUE(program.awaitPreferences(
        {{"capturingEnabled", "true"},
         {"fourDigitInclude", "true"},
         {"loginItemEnabled", "true"}}));
    EXPECT_TRUE(awaitMade());
    EXPECT_THAT(program.session().systemLog(), IsEmpty());
}

TEST_F(LoginItem, IsMadeAgainForAUserWhoSwitchedItOff)
{
    writeFile(program.session().preferences(), "[General]\nloginItemEnabled=false\n");
    program.start();
    EXPECT_TRUE(program.awaitPreferences(
        {{"capturingEnabled", "true"},
         {"fourDigitInclude", "true"},
         {"loginItemEnabled", "false"}}));
    EXPECT_TRUE(awaitMade());
    program.open();
    EXPECT_FALSE(program.element("check box", "Launch at login").is(Accessible::State::checked));
}

TEST_F(LoginItem, NamesTheProgramThatCanBeStarted)
{
    program.start();
    ASSERT_TRUE(awaitMade());
    const std::string path = std::filesystem::canonical(ORLIMO_PROGRAM).string();
    const auto lines = linesOf(contentOf(program.session().autostartEntry()));
    EXPECT_THAT(lines, Contains("[Desktop Entry]"));
    EXPECT_THAT(lines, Contains("Exec=\"" + path + "\" --launched-at-login"));
    EXPECT_THAT(lines, Contains("TryExec=" + path));
}

TEST_F(LoginItem, ThatCannotBeMadeIsLoggedOnceAndTheStartGoesOn)
{
    // Where the folder should be there is a file.
    writeFile(program.session().autostartEntry().parent_path(), "no folder");
    program.start();
    EXPECT_TRUE(awaitWithPolling([this] { return !program.session().systemLog().empty(); }));
    program.open();
    EXPECT_TRUE(program.element("check box", "Launch at login").is(Accessible::State::checked));
    // Priority 11 is an error of a user's program.
    EXPECT_THAT(
        program.session().systemLog(),
        ElementsAre(
            AllOf(StartsWith("11 "), MatchesRegex(".*Failed to enable launch at login: .+"))));

    EXPECT_EQ(contentOf(program.session().autostartEntry().parent_path()), "no folder");
}

TEST_F(LoginItem, ThatCannotBeRemovedIsLoggedToo)
{
    program.start();
    program.open();
    ASSERT_TRUE(awaitMade());
    std::filesystem::remove(program.session().autostartEntry());

    program.click("check box", "Launch at login");
    EXPECT_TRUE(program.awaitPreferences(
        {{"capturingEnabled", "true"},
         {"fourDigitInclude", "true"},
         {"loginItemEnabled", "false"}}));
    EXPECT_TRUE(awaitWithPolling([this] { return !program.session().systemLog().empty(); }));
    EXPECT_THAT(
        program.session().systemLog(),
        ElementsAre(MatchesRegex("11 .*Failed to disable launch at login: .+")));
}

TEST(LoginItemArgument, StartsTheProgramLikeAnyStart)
{
    DesktopProgram program({.arguments = {"--launched-at-login"}});
    program.session().deliver("text Your code is 482913.");
    program.start();
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));
    EXPECT_EQ(program.windows().size(), 1U);
}

} // namespace
} // namespace orlimo
