#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <QPoint>
#include <QRect>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using TraylessTest = DesktopProbeTest;

TEST_F(TraylessTest, WindowOpensAtThePointerOnCommandOnly)
{
    desktop.movePointer({700, 100});
    startProgram();
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_FALSE(window("Content"));
    sendCommand("open if no tray");
    ASSERT_TRUE(awaitActive("Content"));
    EXPECT_EQ(window("Content")->topLeft(), QPoint(550, 101));
}

TEST_F(TraylessTest, WindowAndLaterIconNeedNoSessionBus)
{
    startProgram({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
    sendCommand("open if no tray");
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
