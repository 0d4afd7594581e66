#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The order in which a tray and the program start, and what becomes of the icon when the tray
/// ends.
class TrayStartTest : public DesktopProbeTest
{
protected:
    TrayStartTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    /// Clicks the icon, sees the window open under it, and closes it by another click.
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

TEST_F(TrayStartTest, IconAppearsInATrayThatWasThereBefore)
{
    desktop.startTray({});
    desktop.awaitTray();
    startProgram();
    ASSERT_TRUE(awaitIcon());
    use();
}

TEST_F(TrayStartTest, IconAppearsInATrayThatComesLate)
{
    startProgram();
    runEventLoop(focusSettleTime);
    desktop.startTray({});
    ASSERT_TRUE(awaitIcon());
    use();
}

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

TEST_F(TrayStartTest, IconAppearsInATrayThatStartsAtTheSameTime)
{
    // From the tray well before the program to the program well before the tray.
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

TEST_F(TrayStartTest, WindowClosesWhenItLosesTheFocus)
{
    startProgram();
    desktop.startTray({});
    ASSERT_TRUE(awaitIcon());
    openByClick();
    const auto other = desktop.openOtherApplication();
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayStartTest, WindowDoesNotOpenByItselfWhereThereIsATray)
{
    desktop.startTray({});
    desktop.awaitTray();
    startProgram();
    // Once it is there, no slow bus can make the program believe that there is no place for it.
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
    // The program may learn of it later than the test.
    ASSERT_TRUE(awaitWithPolling([this] {
        sendCommand("open where there is no icon");
        return window("Content").has_value();
    }));
    EXPECT_TRUE(awaitActive("Content"));
}

} // namespace
} // namespace orlimo
