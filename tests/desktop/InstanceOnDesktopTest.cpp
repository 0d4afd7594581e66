#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/desktop/sessions/x11/NonFocusingWindowManager.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A second start on a desktop, as a click in the desktop's menu makes it.
class InstanceOnDesktop : public testing::Test
{
protected:
    [[nodiscard]] std::optional<int> startAgain()
    {
        ProgramSession second({.environment = program.desktop().environment()});
        second.startProgram();
        return second.program().awaitEnd().status;
    }

    DesktopProgram program;
};

TEST_F(InstanceOnDesktop, GetsTheKeyboardOfAnotherApplication)
{
    program.start();
    const auto other = program.desktop().openOtherApplication();
    EXPECT_EQ(startAgain(), 0);
    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);
    program.close();

    EXPECT_EQ(startAgain(), 0);
    EXPECT_TRUE(program.awaitOpen());
}

TEST_F(InstanceOnDesktop, StaysOpenWhenItIsStartedAgain)
{
    program.start();
    program.open();
    EXPECT_EQ(startAgain(), 0);
    runEventLoop(std::chrono::milliseconds(500));
    const auto window = program.window();
    ASSERT_TRUE(window);
    EXPECT_TRUE(program.hasFocus(*window));
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);
}

TEST(InstanceOnDesktopAtTheStart, OpensOverTheGuidance)
{
    DesktopProgram program({.diskAccess = ProgramSession::DiskAccess::folderMissing});
    const auto environment = program.desktop().environment();
    program.desktop().server().freeze();
    program.session().startProgram();
    ChildProcess found(
        "/usr/bin/gdbus",
        {.arguments = {"wait", "--session", "app.orlimo.Orlimo"}, .environment = environment});
    EXPECT_EQ(found.awaitEnd().status, 0);
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
    EXPECT_EQ(startAgain(), 0);
    EXPECT_TRUE(program.awaitOpen());
}

} // namespace
} // namespace orlimo
