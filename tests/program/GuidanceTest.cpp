#include "tests/desktop/sessions/DesktopProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace orlimo {
namespace {

using testing::ElementsAre;

using DiskAccess = ProgramSession::DiskAccess;

/// The window that tells how to grant access, shown at the start where access is missing.
class Guidance : public testing::Test
{
protected:
    /// Starts the program and waits for the window, which it returns.
    XWindow startUnguided()
    {
        program.start();
        EXPECT_TRUE(awaitWithPolling([this] { return program.windows().size() == 1; }));
        EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
        const auto windows = program.windows();
        return windows.empty() ? XWindow{} : windows.front();
    }

    DesktopProgram program{{.diskAccess = DiskAccess::folderMissing}};
};

TEST_F(Guidance, IsCentredOnTheScreenTitledClosableAndOfAFixedSize)
{
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
}

TEST_F(Guidance, SaysWhatToDo)
{
    startUnguided();
    EXPECT_TRUE(program.awaitShown(
        "label", "Full Disk Access is required to read the verification code from Messages."));
    EXPECT_TRUE(program.awaitShown(
        "label",
        "open System Preferences > Security & Privacy > Full Disk Access and allow Orlimo in the "
        "list."));
    EXPECT_TRUE(program.awaitShown("push button", "Open System Setting"));
}

TEST_F(Guidance, StandsInFrontOfOtherApplications)
{
    const auto other = program.desktop().openOtherApplication();
    const XWindow window = startUnguided();
    EXPECT_TRUE(awaitWithPolling([&] {
        const auto all = program.desktop().windows().windowsOf(0);
        const auto above = std::ranges::find(all, window.id, &XWindow::id);
        return above != all.end() &&
               std::ranges::count(above, all.end(), "xmessage", &XWindow::title) == 0;
    }));
}

TEST_F(Guidance, LeavesTheProgramRunningWhenItsCloseButtonIsClicked)
{
    const XWindow window = startUnguided();
    // The button is the last one of the title bar, and as wide as that is high.
    const int half = window.frame.top() / 2;
    program.desktop().click(
        {window.area.right() + window.frame.right() - half, window.area.top() - half});
    EXPECT_TRUE(awaitWithPolling([this] { return program.windows().empty(); }));

    ProgramSession::waitForThrottle();
    program.session().deliver("text Your code is 482913.");
    EXPECT_TRUE(program.awaitPaste("482913"));
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));
}

TEST_F(Guidance, OpensTheSystemsSettingsAndStays)
{
    const XWindow window = startUnguided();
    program.click("push button", "Open System Setting");
    EXPECT_TRUE(awaitWithPolling([this] { return !program.desktop().openedAddresses().empty(); }));
    EXPECT_THAT(
        program.desktop().openedAddresses(),
        ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
    const auto windows = program.windows();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows.front().id, window.id);
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

TEST_F(Guidance, HasTheMessagesReadOnceForItsActivation)
{
    const XWindow window = startUnguided();
    ASSERT_TRUE(awaitWithPolling([&] { return program.hasFocus(window); }));
    EXPECT_TRUE(awaitWithPolling([this] { return program.count(DesktopProgram::readLine) == 1; }));
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_EQ(program.count(DesktopProgram::readLine), 1);
}

TEST_F(Guidance, ComesBeforeTheWindowThatOpensWhereThereIsNoTray)
{
    program.desktop().killTray();
    program.session().startProgram();
    EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
    // Longer than the program waits to learn whether there is a tray.
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_EQ(program.windows().size(), 1U);
    EXPECT_FALSE(program.window());

    program.desktop().press("alt+F4");
    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.windows().size(), 1U);
}

TEST_F(Guidance, LeavesTheIconItsWindowWhereThereIsATray)
{
    startUnguided();
    program.desktop().press("alt+F4");
    ASSERT_TRUE(awaitWithPolling([this] { return program.windows().empty(); }));
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_TRUE(program.windows().empty());
}

TEST_F(Guidance, IsNotShownTwiceInARun)
{
    startUnguided();
    program.desktop().press("alt+F4");
    ASSERT_TRUE(awaitWithPolling([this] { return program.windows().empty(); }));
    program.open();
    EXPECT_EQ(program.windows().size(), 1U);
}

/// Opens the window under the icon, by which time a window of the start would be there, and expects
/// no other.
void expectNoOtherWindow(DesktopProgram& program)
{
    program.open();
    EXPECT_EQ(program.windows().size(), 1U);
    EXPECT_FALSE(program.shows("label", "Allow acess"));
}

TEST(GuidanceByAccess, IsNotShownWhereAnEmptyFolderCanBeListed)
{
    DesktopProgram program({.diskAccess = DiskAccess::granted});
    program.start();
    expectNoOtherWindow(program);
}

TEST(GuidanceByAccess, IsNotShownWhereAFilledFolderCanBeListed)
{
    DesktopProgram program({.diskAccess = DiskAccess::granted});
    writeFile(program.session().probeFolder() / "Data/prices", "up");
    program.start();
    expectNoOtherWindow(program);
}

TEST(GuidanceByAccess, IsShownWhereTheFolderCannotBeListed)
{
    DesktopProgram program({.diskAccess = DiskAccess::folderUnreadable});
    program.start();
    EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
}

TEST(GuidanceByAccess, LooksInTheHomeOfTheUserDatabaseAlone)
{
    const TemporaryFolder elsewhere;
    std::filesystem::create_directories(elsewhere.path() / "Library/Containers/com.apple.stocks");
    DesktopProgram program(
        {.diskAccess = DiskAccess::folderMissing,
         .environment = {{"HOME", elsewhere.path().string()}}});
    program.session().startProgram();
    EXPECT_EQ(program.element("label", "Allow acess").name(), "Allow acess");
}

} // namespace
} // namespace orlimo
