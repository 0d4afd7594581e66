#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace orlimo {
namespace {

using testing::Contains;
using testing::ElementsAre;

using State = Accessible::State;

/// The window under the icon, used with the mouse and the keyboard.
class Window : public testing::Test
{
protected:
    void SetUp() override
    {
        program.session().deliver("text Your code is 482913.");
        program.start();
    }

    /// Moves the keyboard's focus on until it is on `control`.
    void focus(const Accessible& control)
    {
        constexpr int more = 20; // than there is in the window to go to
        for (int step = 0; step < more && !control.is(State::focused); ++step) {
            program.desktop().press("Tab");
            (void)awaitWithPolling(
                [&] { return control.is(State::focused); }, std::chrono::milliseconds(500));
        }
        ASSERT_TRUE(control.is(State::focused)) << "it cannot be reached with the keyboard";
    }

    DesktopProgram program;
};

TEST_F(Window, OpensInFrontUnderTheIconAndClosesAtALostFocusOrASecondClick)
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

    constexpr QPoint inTheOtherApplication(400, 600);
    program.desktop().click(inTheOtherApplication);
    EXPECT_TRUE(program.awaitClosed());
    const auto active = program.desktop().windows().activeWindow();
    ASSERT_TRUE(active);
    EXPECT_EQ(active->title, "xmessage");

    program.open();
    program.clickIcon();
    EXPECT_TRUE(program.awaitClosed());
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_FALSE(program.window());
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

TEST_F(Window, KeepsShowingItsCodeWhileItIsOpen)
{
    ProgramSession::waitForThrottle();
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));

    program.session().deliver("text Your code is 59302.");
    EXPECT_TRUE(program.awaitPaste("59302"));
    EXPECT_TRUE(program.shows("label", "482913"));
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

TEST_F(Window, StoresEverySwitchAtOnce)
{
    std::map<std::string, std::string> expected{
        {"capturingEnabled", "true"}, {"fourDigitInclude", "true"}, {"loginItemEnabled", "true"}};
    const auto entry = program.session().autostartEntry();
    ASSERT_TRUE(program.awaitPreferences(expected));
    program.open();
    // No key works on a control before Tab has led to it.
    program.desktop().press("space");
    for (const auto& [name, key] : std::map<std::string, std::string>{
             {"Auto Copy to Clipboard", "capturingEnabled"},
             {"Include 4 digit code", "fourDigitInclude"},
             {"Launch at login", "loginItemEnabled"}})
    {
        const Accessible control = program.element("check box", name);
        ASSERT_TRUE(awaitWithPolling([&] { return control.is(State::checked); })) << name;
        program.click("check box", name);
        expected[key] = "false";
        ASSERT_TRUE(program.awaitPreferences(expected)) << name;
        ASSERT_TRUE(awaitWithPolling([&] { return !control.is(State::checked); })) << name;
        const bool startsAtLogin = key != "loginItemEnabled";
        ASSERT_TRUE(
            awaitWithPolling([&] { return std::filesystem::exists(entry) == startsAtLogin; }));

        ASSERT_NO_FATAL_FAILURE(focus(control)) << name;
        program.desktop().press("space");
        expected[key] = "true";
        ASSERT_TRUE(program.awaitPreferences(expected)) << name;
        ASSERT_TRUE(awaitWithPolling([&] { return control.is(State::checked); })) << name;
    }
    ASSERT_TRUE(awaitWithPolling([&] { return std::filesystem::exists(entry); }));
    const std::string path = std::filesystem::canonical(ORLIMO_PROGRAM).string();
    EXPECT_THAT(linesOf(contentOf(entry)), Contains("Exec=\"" + path + "\" --launched-at-login"));
}

TEST_F(Window, AnnouncesEachTextOnce)
{
    program.open();
    ASSERT_TRUE(program.awaitShown("frame", "Orlimo"));
    const AccessibilityTree& tree = program.desktop().accessibility();
    std::map<std::string, int> counts;
    for (const Accessible& element : tree.showing()) {
        ++counts[element.name()];
    }
    for (const char* text :
         {"Capture Options",
          "Auto Copy to Clipboard",
          "Include 4 digit code",
          "Launch at login",
          "Latest Code",
          "482913",
          "Copy",
          "About",
          "Open website",
          "Quit"})
    {
        EXPECT_EQ(counts[text], 1) << text << '\n' << tree.describe();
    }
}

TEST_F(Window, CommandsOpenAboutAndTheWebsiteAndQuit)
{
    program.open();
    program.click("push button", "About");
    ASSERT_TRUE(awaitWithPolling([this] {
        const auto active = program.desktop().windows().activeWindow();
        return active && active->title == "About Orlimo";
    }));
    ASSERT_TRUE(program.awaitClosed());
    const auto windows = program.windows();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_GT(windows.front().frame.top(), 0);

    program.open();
    program.click("push button", "Open website");
    EXPECT_TRUE(awaitWithPolling([this] { return !program.desktop().openedAddresses().empty(); }));
    EXPECT_THAT(program.desktop().openedAddresses(), ElementsAre("https://orlimo.app/"));

    program.click("push button", "Quit");
    const auto end = program.process().awaitEnd();
    EXPECT_EQ(end.status, 0) << program.process().errors();
    EXPECT_EQ(program.process().errors(), "");
}

TEST(WindowOnShortScreen, StaysWithinTheScreenAndIsScrolledToQuitByFocusAndWheel)
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
    for (int step = 0; step < 10; ++step) {
        program.desktop().click(window->area.center(), wheelUp);
    }
    EXPECT_TRUE(awaitWithPolling([&] { return !isQuitShown(); }));
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
    const QRect ground(window->area.topLeft() + QPoint(8, 8), QSize(1, 1));
    const auto brightness = [&] {
        return qGray(program.desktop().windows().picture(ground).pixel(0, 0));
    };
    EXPECT_TRUE(awaitWithPolling([&] { return brightness() < 60; })) << brightness();
    portal.changeColorScheme(2U);
    EXPECT_TRUE(awaitWithPolling([&] { return brightness() > 200; })) << brightness();
}

} // namespace
} // namespace orlimo
