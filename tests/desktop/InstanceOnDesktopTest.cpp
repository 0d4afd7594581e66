#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A second start on a desktop, as a click in the desktop's menu makes it.
class InstanceOnDesktop : public testing::Test
{
protected:
    void startAgain()
    {
        ProgramSession second({.environment = program.desktop().environment()});
        second.startProgram();
        EXPECT_EQ(second.program().awaitEnd().status, 0);
    }

    DesktopProgram program;
};

TEST_F(InstanceOnDesktop, OpensWithTheKeyboardAndStaysOpen)
{
    program.start();
    const auto other = program.desktop().openOtherApplication();
    startAgain();
    EXPECT_TRUE(program.awaitOpen());
    startAgain();
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);
    program.close();

    startAgain();
    EXPECT_TRUE(program.awaitOpen());
}

TEST(InstanceOnDesktopAtTheStart, OpensOverTheGuidance)
{
    DesktopProgram program({.diskAccess = ProgramSession::DiskAccess::folderMissing});
    const auto environment = program.desktop().environment();
    program.desktop().server().freeze();
    program.session().startProgram();
    const auto found = runTool(
        "/usr/bin/gdbus",
        {.arguments = {"wait", "--session", "app.orlimo.Orlimo"}, .environment = environment});
    EXPECT_EQ(found.status, 0) << found.errors;
    ProgramSession second({.environment = environment});
    second.startProgram();
    EXPECT_EQ(second.program().awaitEnd().status, 0);
    program.desktop().server().thaw();

    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.windows().size(), 2U);
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(program.window());
}

/// A desktop whose window manager gives the keyboard to no new window by itself.
class InstanceOnNonFocusingDesktop : private NonFocusingWindowManager, public InstanceOnDesktop
{};

TEST_F(InstanceOnNonFocusingDesktop, GetsTheKeyboard)
{
    program.start();
    startAgain();
    EXPECT_TRUE(program.awaitOpen());
}

} // namespace
} // namespace orlimo
