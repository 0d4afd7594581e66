#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/support/widgets/QtPrinting.h"

#include <gtest/gtest.h>

#include <iterator>

namespace orlimo {
namespace {

/// How the window under the icon opens and closes.
class Window : public testing::Test
{
protected:
    void SetUp() override
    {
        program.session().deliver("text Your code is 482913.");
        program.start();
    }

    /// How many files the program holds open.
    [[nodiscard]] std::ptrdiff_t openDescriptors()
    {
        const std::string folder = "/proc/" + std::to_string(program.process().processId()) + "/fd";
        return std::distance(
            std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }

    DesktopProgram program;
};

TEST_F(Window, OpensUnderTheIconInFrontOfOtherApplicationsAndNotBefore)
{
    const auto other = program.desktop().openOtherApplication();
    // What is done after the start is done before a click is processed.
    program.open();
    EXPECT_EQ(program.windows().size(), 1U);
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);
    const auto window = program.window();
    ASSERT_TRUE(window);
    EXPECT_FALSE(program.isCovered(*window));
    EXPECT_EQ(window->frame, QMargins());
    constexpr QRect belowTheTray(0, 24, 1280, 800 - 24);
    EXPECT_TRUE(belowTheTray.contains(window->area)) << testing::PrintToString(window->area);
    EXPECT_LT(window->area.top(), 60);
    EXPECT_GT(window->area.right(), 1200);
}

TEST_F(Window, ClosesOnASecondClickAndStaysClosed)
{
    program.open();
    program.clickIcon();
    EXPECT_TRUE(program.awaitClosed());
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_FALSE(program.window());
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);

    constexpr int middle = 2;
    program.clickIcon(middle);
    EXPECT_TRUE(program.awaitOpen());
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 2);
}

TEST_F(Window, StaysOpenAfterADoubleClick)
{
    program.doubleClickIcon();
    ASSERT_TRUE(program.awaitOpen());
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(program.window());
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 1);
}

TEST_F(Window, OpensFromTheIconsMenuWhichQuitsToo)
{
    program.chooseFromIconsMenu(0, 2);
    EXPECT_TRUE(program.awaitOpen());
    program.close();
    program.chooseFromIconsMenu(1, 2);
    EXPECT_EQ(program.process().awaitEnd().status, 0) << program.process().errors();
}

TEST_F(Window, ClosesWhenItLosesTheFocus)
{
    const auto other = program.desktop().openOtherApplication();
    program.open();
    constexpr QPoint inTheOtherApplication(400, 600);
    program.desktop().click(inTheOtherApplication);
    EXPECT_TRUE(program.awaitClosed());
    const auto active = program.desktop().windows().activeWindow();
    ASSERT_TRUE(active);
    EXPECT_EQ(active->title, "xmessage");
}

TEST_F(Window, KeepsShowingItsCodeWhileItIsOpen)
{
    ProgramSession::waitForThrottle();
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));

    program.session().deliver("text Your code is 59302.");
    EXPECT_TRUE(program.awaitPaste("59302"));
    EXPECT_TRUE(program.awaitShown("label", "482913"));
    EXPECT_FALSE(program.shows("label", "59302"));

    program.click("push button", "Copy");
    EXPECT_TRUE(program.awaitPaste("482913"));

    program.close();
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "59302"));
    EXPECT_FALSE(program.shows("label", "482913"));
}

TEST_F(Window, ReadsTheMessagesOnceForItselfAndOnceForTheActivationAndSaysNothingElse)
{
    EXPECT_EQ(program.count(DesktopProgram::readLine), 0);
    constexpr int rounds = 2;
    for (int round = 1; round <= rounds; ++round) {
        program.open();
        ASSERT_TRUE(awaitWithPolling(
            [&] { return program.count(DesktopProgram::readLine) >= 2L * round; }));
        program.close();
    }
    const std::string before = program.process().output();
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_EQ(program.count(DesktopProgram::readLine), 2L * rounds);
    EXPECT_EQ(program.process().output(), before);
    EXPECT_EQ(program.process().errors(), "");
}

TEST_F(Window, LeavesNothingBehindWhenItCloses)
{
    // The first times load what is kept from then on.
    for (int round = 0; round < 3; ++round) {
        program.open();
        program.close();
    }
    const auto before = openDescriptors();
    constexpr int rounds = 50;
    for (int round = 0; round < rounds; ++round) {
        program.open();
        program.close();
    }
    EXPECT_TRUE(awaitWithPolling([&] { return openDescriptors() <= before; }))
        << openDescriptors() << " open files, " << before << " before";
    EXPECT_EQ(program.count(DesktopProgram::appearLine), 3 + rounds);
}

TEST(WindowOnShortScreen, StaysWithinTheScreenAndIsScrolledToQuitByWheelAndFocus)
{
    constexpr QRect screen(0, 0, 1024, 480);
    DesktopProgram program({}, "1024x480x24");
    program.start();
    program.open();
    const auto window = program.window();
    ASSERT_TRUE(window);
    EXPECT_EQ(window->area.width(), 300);
    EXPECT_TRUE(screen.contains(window->area)) << testing::PrintToString(window->area);
    EXPECT_FALSE(window->resizable);

    const auto isQuitShown = [&] {
        return screen.contains(program.element("push button", "Quit").area());
    };
    EXPECT_FALSE(isQuitShown());
    program.desktop().press("shift+Tab");
    EXPECT_TRUE(awaitWithPolling(isQuitShown));
    constexpr int wheelUp = 4;
    constexpr int wheelDown = 5;
    for (const int button : {wheelUp, wheelDown}) {
        for (int step = 0; step < 10; ++step) {
            program.desktop().click(window->area.center(), button);
        }
        EXPECT_TRUE(awaitWithPolling([&] { return isQuitShown() == (button == wheelDown); }));
    }
    program.click("push button", "Quit");
    EXPECT_EQ(program.process().awaitEnd().status, 0) << program.process().errors();
}

TEST(WindowColors, FollowThePortalsColorScheme)
{
    DesktopProgram program;
    ScriptedPortal portal(program.desktop().environment().at("DBUS_SESSION_BUS_ADDRESS").value());
    portal.setColorScheme(1U);
    program.start();
    program.open();
    const auto window = program.window();
    ASSERT_TRUE(window);
    // In the padding, where there is nothing but the window's own colour.
    const QPoint ground = window->area.topLeft() + QPoint(8, 8);
    const auto brightness = [&] { return program.desktop().windows().brightnessAt(ground); };
    EXPECT_TRUE(awaitWithPolling([&] { return brightness() < 60; })) << brightness();
    portal.changeColorScheme(2U);
    EXPECT_TRUE(awaitWithPolling([&] { return brightness() > 200; })) << brightness();
}

} // namespace
} // namespace orlimo
