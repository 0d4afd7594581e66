#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace orlimo {
namespace {

/// The window that explains how to grant access, shown at the start where access is missing.
class Guidance : public testing::Test
{
protected:
    /// Starts the program and waits for the window, which it returns.
    XWindow startUnguided()
    {
        program.start();
        EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
        EXPECT_TRUE(program.awaitWindows(1));
        const auto windows = program.windows();
        return windows.empty() ? XWindow{} : windows.front();
    }

    DesktopProgram program{{.diskAccess = ProgramSession::DiskAccess::folderMissing}};
};

TEST_F(Guidance, IsCentredInFrontTitledClosableAndOfAFixedSize)
{
    const auto other = program.desktop().openOtherApplication();
    const XWindow window = startUnguided();
    EXPECT_EQ(window.area.size(), QSize(500, 500));
    EXPECT_FALSE(window.resizable);
    EXPECT_GT(window.frame.top(), 0) << "no title bar";
    EXPECT_NE(window.title, "");
    EXPECT_TRUE(window.closable);
    EXPECT_FALSE(window.minimizable);
    // In the middle of the whole screen, the tray's part of it included, up to the frame.
    EXPECT_LE(std::abs(window.area.x() - (1280 - 500) / 2), window.frame.left());
    EXPECT_LE(std::abs(window.area.y() - (800 - 500) / 2), window.frame.top());
    EXPECT_TRUE(awaitWithPolling([&] { return !program.isCovered(window); }));
}

TEST_F(Guidance, LeavesTheProgramRunningWhenItsCloseButtonIsClicked)
{
    const XWindow window = startUnguided();
    // The button is the last one of the title bar, and as wide as that is high.
    const int half = window.frame.top() / 2;
    program.desktop().click(
        {window.area.right() + window.frame.right() - half, window.area.top() - half});
    EXPECT_TRUE(program.awaitWindows(0));

    ProgramSession::waitForThrottle();
    program.session().deliver("text Your code is 482913.");
    EXPECT_TRUE(program.awaitPaste("482913"));
    // Nor is it shown again: the window under the icon is alone.
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));
    EXPECT_EQ(program.windows().size(), 1U);
}

TEST_F(Guidance, ComesBackWhenTheWindowManagerMinimizesIt)
{
    const XWindow window = startUnguided();
    ASSERT_TRUE(awaitWithPolling([&] { return program.hasFocus(window); }));
    // The window manager draws a button for that although the window asks for none, the third one
    // from the right.
    constexpr int fromTheRight = 42;
    program.desktop().click(
        {window.area.right() + window.frame.right() - fromTheRight,
         window.area.top() - window.frame.top() / 2});
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(awaitWithPolling([&] {
        const auto windows = program.windows();
        return windows.size() == 1 && program.hasFocus(windows.front());
    }));
}

TEST_F(Guidance, ComesBeforeTheWindowThatOpensWhereThereIsNoTray)
{
    program.desktop().killTray();
    program.session().startProgram();
    EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
    // Longer than the program waits to find out whether there is a tray.
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_EQ(program.windows().size(), 1U);
    EXPECT_FALSE(program.window());

    program.desktop().press("alt+F4");
    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.windows().size(), 1U);
}

} // namespace
} // namespace orlimo
