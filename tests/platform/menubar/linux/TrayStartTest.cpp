#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// Tray and program in every order of starting, and the end of the tray.
class TrayStartTest : public DesktopProbeTest
{
protected:
    TrayStartTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    /// Opens the window under the icon with a click and closes it with another one.
    void use()
    {
        runEventLoop(focusSettleTime);
        openByClick();
        const auto area = window("Content");
        ASSERT_TRUE(area);
        EXPECT_EQ(area->y(), 24);
        runEventLoop(focusSettleTime);
        desktop.click(icon.center());
        EXPECT_TRUE(awaitClosed());
        runEventLoop(focusSettleTime);
        EXPECT_FALSE(window("Content"));
    }
};

TEST_F(TrayStartTest, IconComesBackWithTheTray)
{
    desktop.startTray({});
    startProgram();
    ASSERT_TRUE(awaitIcon());
    for (int round = 0; round < 3; ++round) {
        desktop.killTray();
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(isWindowReported(false));
        desktop.startTray({});
        ASSERT_TRUE(awaitIcon()) << round;
        use();
    }
}

TEST_F(TrayStartTest, IconAppearsInATrayThatStartsAtAnyTime)
{
    // From the tray long before the program to the program long before the tray.
    constexpr std::chrono::milliseconds step(40);
    for (int round = 0; round < 20; ++round) {
        if (round < 10) {
            desktop.startTray({});
            runEventLoop(step * (9 - round));
            launchProgram();
        } else {
            launchProgram();
            runEventLoop(step * (round - 10));
            desktop.startTray({});
        }
        ASSERT_TRUE(awaitIcon()) << round;
        program.reset();
        desktop.killTray();
    }
}

TEST_F(TrayStartTest, WindowDoesNotOpenByItselfIfThereIsATray)
{
    desktop.startTray({});
    desktop.awaitTray();
    startProgram();
    // With the icon in the tray, a slow bus no longer matters.
    ASSERT_TRUE(awaitIcon());
    sendCommand("open where there is no icon");
    // Longer than the program waits for the bus.
    runEventLoop(std::chrono::milliseconds(1500));
    EXPECT_EQ(count("opened"), 0);
    use();
}

TEST_F(TrayStartTest, WindowOpensByItselfWhileTheTrayIsGone)
{
    desktop.startTray({});
    startProgram();
    ASSERT_TRUE(awaitIcon());
    desktop.killTray();
    // The program may be notified of it later than the test.
    ASSERT_TRUE(awaitWithPolling([this] {
        sendCommand("open where there is no icon");
        return window("Content").has_value();
    }));
    EXPECT_TRUE(awaitActive("Content"));
}

} // namespace
} // namespace orlimo
