#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace orlimo {
namespace {

using testing::Contains;
using testing::ElementsAre;

using State = Accessible::State;

std::map<std::string, std::string> allPreferencesOn()
{
    return {
        {"capturingEnabled", "true"}, {"fourDigitInclude", "true"}, {"loginItemEnabled", "true"}};
}

/// The whole program in use, from its start to its end.
class UserJourney : public testing::Test
{
protected:
    void SetUp() override
    {
        program.session().deliver("text Your code is 482913.");
        program.start();
    }

    /// Moves the keyboard's focus on until it is on the switch `name`.
    void focusSwitch(const std::string& name)
    {
        const Accessible control = program.element("check box", name);
        constexpr int more = 20; // than there is in the window to go to
        for (int step = 0; step < more && !control.is(State::focused); ++step) {
            program.desktop().press("Tab");
            (void)awaitWithPolling(
                [&] { return control.is(State::focused); }, std::chrono::milliseconds(500));
        }
        ASSERT_TRUE(control.is(State::focused)) << name << " cannot be reached with the keyboard";
    }

    /// Waits until the switch `name` stands as given.
    testing::AssertionResult awaitSwitch(const std::string& name, bool on)
    {
        const Accessible control = program.element("check box", name);
        return awaitWithPolling([&] { return control.is(State::checked) == on; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << name << " is " << (on ? "off" : "on");
    }

    DesktopProgram program;
};

TEST_F(UserJourney, EverySwitchIsStoredAtOnce)
{
    auto expected = allPreferencesOn();
    ASSERT_TRUE(program.awaitPreferences(expected));
    program.open();
    const std::vector<std::pair<std::string, std::string>> switches{
        {"Auto Copy to Clipboard", "capturingEnabled"},
        {"Include 4 digit code", "fourDigitInclude"},
        {"Launch at login", "loginItemEnabled"},
    };
    for (const auto& [name, key] : switches) {
        EXPECT_TRUE(awaitSwitch(name, true));
        program.click("check box", name);
        expected[key] = "false";
        EXPECT_TRUE(program.awaitPreferences(expected)) << name;
        EXPECT_TRUE(awaitSwitch(name, false));

        focusSwitch(name);
        program.desktop().press("space");
        expected[key] = "true";
        EXPECT_TRUE(program.awaitPreferences(expected)) << name;
        EXPECT_TRUE(awaitSwitch(name, true));
    }
}

TEST_F(UserJourney, NoKeyWorksOnAControlBeforeTabHasLedToIt)
{
    for (int opening = 0; opening < 2; ++opening) {
        program.open();
        for (const char* key : {"space", "Return", "KP_Enter"}) {
            program.desktop().press(key);
        }
        focusSwitch("Include 4 digit code");
        EXPECT_TRUE(awaitSwitch("Auto Copy to Clipboard", true));
        EXPECT_TRUE(program.awaitPreferences(allPreferencesOn()));
        program.close();
    }
}

TEST_F(UserJourney, EachTextIsAnnouncedOnce)
{
    program.open();
    ASSERT_TRUE(program.awaitShown("frame", "Orlimo"));
    const AccessibilityTree& tree = program.desktop().accessibility();
    std::map<std::string, int> counts;
    for (const Accessible& element : tree.showing("Orlimo")) {
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
        EXPECT_EQ(counts[text], 1) << text << '\n' << tree.describe("Orlimo");
    }
}

TEST_F(UserJourney, LoginSwitchMakesAndRemovesTheAutostartEntry)
{
    const auto startsAtLogin = [this] {
        return std::filesystem::exists(program.session().autostartEntry());
    };
    ASSERT_TRUE(awaitWithPolling(startsAtLogin));
    program.open();
    program.click("check box", "Launch at login");
    EXPECT_TRUE(awaitWithPolling([&] { return !startsAtLogin(); }));

    program.click("check box", "Launch at login");
    ASSERT_TRUE(awaitWithPolling(startsAtLogin));
    const std::string path = std::filesystem::canonical(ORLIMO_PROGRAM).string();
    EXPECT_THAT(
        linesOf(contentOf(program.session().autostartEntry())),
        Contains("Exec=\"" + path + "\" --launched-at-login"));
}

TEST_F(UserJourney, AutomaticCopyingEndsAndBeginsWithItsSwitch)
{
    ProgramSession::waitForThrottle();
    program.desktop().server().copy("clipboard", "something that the user copied");
    program.open();
    program.click("check box", "Auto Copy to Clipboard");
    ASSERT_TRUE(awaitSwitch("Auto Copy to Clipboard", false));
    program.session().deliver("text Your code is 111222.");
    ProgramSession::waitForThrottle();
    EXPECT_EQ(program.desktop().server().paste("clipboard"), "something that the user copied\n");

    program.click("check box", "Auto Copy to Clipboard");
    ASSERT_TRUE(awaitSwitch("Auto Copy to Clipboard", true));
    program.session().deliver("text Your code is 333444.");
    EXPECT_TRUE(program.awaitPaste("333444"));
}

TEST_F(UserJourney, CommandsOpenAboutOnceAndTheWebsiteAndQuit)
{
    std::uint32_t first = 0;
    for (int round = 0; round < 2; ++round) {
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
        first = round == 0 ? windows.front().id : first;
        EXPECT_EQ(windows.front().id, first);
    }
    program.open();
    program.click("push button", "Open website");
    EXPECT_TRUE(awaitWithPolling([this] { return !program.desktop().openedAddresses().empty(); }));
    EXPECT_THAT(program.desktop().openedAddresses(), ElementsAre("https://orlimo.app/"));

    program.click("push button", "Quit");
    const auto end = program.process().awaitEnd();
    EXPECT_EQ(end.status, 0) << program.process().errors();
    EXPECT_EQ(end.signal, std::nullopt);
    EXPECT_EQ(program.process().errors(), "");
}

} // namespace
} // namespace orlimo
