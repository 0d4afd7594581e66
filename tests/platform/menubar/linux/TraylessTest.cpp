#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <QPoint>
#include <QRect>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A desktop without a system tray.
class TraylessTest : public DesktopProbeTest
{
protected:
    TraylessTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    /// Opens another window and then the extra's, with a stopped clock: however late the desktop
    /// moves the focus, the windows have only just been opened.
    void openBesideAnotherWindow()
    {
        sendCommand("stop the clock");
        sendCommand("open beside another window");
        ASSERT_TRUE(awaitActive("Content"));
    }
};

TEST_F(TraylessTest, WindowOpensAtThePointerOnCommandOnly)
{
    desktop.movePointer({700, 100});
    startProgram();
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_TRUE(isWindowReported(false));
    sendCommand("open where there is no icon");
    ASSERT_TRUE(awaitActive("Content"));
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->topLeft(), QPoint(550, 101));
}

TEST_F(TraylessTest, WindowAndIconNeedNoSessionBus)
{
    startProgram({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
    sendCommand("open where there is no icon");
    ASSERT_TRUE(awaitActive("Content"));
    desktop.press("Escape");
    ASSERT_TRUE(awaitClosed());
    desktop.startTray({});
    ASSERT_TRUE(awaitIcon());
    openByClick();
}

TEST_F(TraylessTest, WindowKeepsTheFocusBesideAnotherWindowForAWhile)
{
    startProgram();
    ASSERT_NO_FATAL_FAILURE(openBesideAnotherWindow());
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(window("Content"));
    EXPECT_TRUE(window("Beside"));

    const auto lossesBefore = count("unfocused");
    desktop.click({40, 200});
    EXPECT_TRUE(awaitWithPolling([&] { return count("unfocused") > lossesBefore; }));
    EXPECT_TRUE(awaitActive("Content"));
    EXPECT_EQ(count("closed"), 0);
    sendCommand("let a minute pass");
    desktop.click({40, 200});
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TraylessTest, AboutPanelTakesTheFocusRightAfterAnOpeningOnRequest)
{
    startProgram();
    sendCommand("stop the clock");
    sendCommand("open on request beside another window");
    ASSERT_TRUE(awaitActive("Content"));
    sendCommand("about");
    EXPECT_TRUE(awaitActive("About Orlimo"));
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(awaitActive("About Orlimo"));
}

TEST_F(TraylessTest, IconAppearsLaterAndWorks)
{
    startProgram();
    sendCommand("open where there is no icon");
    ASSERT_TRUE(awaitActive("Content"));
    desktop.startTray({});
    ASSERT_TRUE(awaitIcon());
    desktop.press("Escape");
    ASSERT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    openByClick();
    EXPECT_EQ(window("Content")->y(), 24);
}

} // namespace
} // namespace orlimo
