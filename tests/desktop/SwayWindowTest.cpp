#include "tests/desktop/sessions/DesktopTest.h"
#include "tests/desktop/sessions/DesktopVariables.h"
#include "tests/desktop/sessions/wayland/SwaySession.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <thread>
#include <utility>

namespace orlimo {
namespace {

using testing::SizeIs;

/// The program on a Wayland desktop whose bar has a tray.
class ProgramOnSway : public DesktopTest<SwaySession>
{
protected:
    /// Starts the program on a store with a message, by default as the login does: its window then
    /// does not open by itself, not even where the bus is slow to report the tray.
    void start(std::vector<std::string> arguments = {"--launched-at-login"})
    {
        ownSession.emplace(ProgramSession::Settings{
            .arguments = std::move(arguments),
            .environment = desktop().environment(),
            .beforeStart = dieWithParent});
        session().startWriter();
        session().deliver("text Your code is 482913.");
        session().startProgram();
        ASSERT_TRUE(session().program().awaitLine("file access allowed"))
            << session().program().errors();
    }

    [[nodiscard]] ProgramSession& session() { return *ownSession; }

    [[nodiscard]] testing::AssertionResult awaitIcon()
    {
        return awaitCondition([this] { return icon().has_value(); });
    }

    /// The program's icon: its name on the bus.
    [[nodiscard]] std::optional<std::string> icon()
    {
        for (const std::string& service : desktop().tray().services()) {
            if (desktop().tray().titleOf(service) == "Orlimo") {
                return service;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] std::vector<SwayWindow> windows()
    {
        return desktop().windowsOf(session().program().processId());
    }

    /// Waits for `condition`; a failure describes the desktop.
    [[nodiscard]] testing::AssertionResult awaitCondition(const std::function<bool()>& condition)
    {
        if (awaitWithPolling(condition)) {
            return testing::AssertionSuccess();
        }
        testing::AssertionResult result = testing::AssertionFailure();
        for (const SwayWindow& one : desktop().windows()) {
            result << "window \"" << one.title << "\" of process " << one.process
                   << (one.isFocused ? ", focused\n" : "\n");
        }
        return result << "the program is process " << session().program().processId()
                      << " and printed\n"
                      << session().program().output() << session().program().errors();
    }

    [[nodiscard]] testing::AssertionResult awaitOpen()
    {
        auto opened = awaitCondition([this] {
            const auto all = windows();
            return all.size() == 1 && all.front().isFocused;
        });
        lastClick = std::chrono::steady_clock::now();
        return opened;
    }

    [[nodiscard]] testing::AssertionResult awaitClosed()
    {
        auto closed = awaitCondition([this] { return windows().empty(); });
        lastClick = std::chrono::steady_clock::now();
        return closed;
    }

    /// Waits until another application has the focus.
    void awaitFocusLost()
    {
        ASSERT_TRUE(awaitCondition([this] {
            const auto all = windows();
            return all.size() != 1 || !all.front().isFocused;
        }));
    }

    /// Clicks the icon at the pace of a person: not so soon after the last click, or after the
    /// window opened for it or closed, that both count as one. False when the bar shows no icon.
    [[nodiscard]] bool clickIcon()
    {
        const bool isShown = awaitWithPolling([this] { return desktop().showsIcon(); });
        std::this_thread::sleep_until(lastClick + betweenClicks);
        desktop().click(SwaySession::onlyIcon);
        lastClick = std::chrono::steady_clock::now();
        return isShown;
    }

    /// Clicks the icon and waits until the window is open and has the focus.
    void open()
    {
        ASSERT_TRUE(awaitIcon());
        ASSERT_TRUE(clickIcon());
        ASSERT_TRUE(awaitOpen());
    }

    /// Moves the pointer, step by step as a hand does, from the icon to the middle of the window,
    /// and waits until the program has received the focus for it.
    void movePointerInside()
    {
        const QPoint from = SwaySession::onlyIcon;
        const QPoint distance = windows().front().area.center() - from;
        constexpr int steps = 8;
        for (int step = 1; step <= steps; ++step) {
            desktop().movePointer(from + distance * step / steps);
        }
        ASSERT_TRUE(awaitOpen());
        // Qt 6.4 drops the loss of a focus that it has not yet reported. What follows a key that
        // has taken effect comes later than that.
        desktop().press("Tab");
        ASSERT_TRUE(awaitWithPolling([this] { return hasFocusedControl(); }))
            << desktop().accessibility().describe("Orlimo");
    }

    [[nodiscard]] bool hasFocusedControl()
    {
        const auto elements = desktop().accessibility().showing("Orlimo");
        return std::ranges::any_of(elements, [](const Accessible& element) {
            const std::string role = element.role();
            return (role == "push button" || role == "check box") &&
                   element.is(Accessible::State::focused);
        });
    }

    /// Clicks the middle of what the window shows under this role and name.
    void clickInWindow(const std::string& role, const std::string& name)
    {
        std::optional<Accessible> element;
        ASSERT_TRUE(awaitWithPolling([&] {
            element = desktop().accessibility().find("Orlimo", role, name);
            return element.has_value();
        })) << desktop().accessibility().describe("Orlimo");
        // A program of Wayland knows where it is in its window, and not where that is.
        desktop().click(windows().front().area.topLeft() + element->area().center());
    }

    void activate()
    {
        ASSERT_TRUE(awaitIcon());
        desktop().tray().activate(*icon(), SwaySession::onlyIcon.x(), SwaySession::onlyIcon.y());
    }

    /// Longer than the clicks of a double click lie apart.
    static constexpr std::chrono::milliseconds betweenClicks{700};

private:
    std::optional<ProgramSession> ownSession;
    std::chrono::steady_clock::time_point lastClick;
};

TEST_F(ProgramOnSway, HasItsIconInTheTrayAndBringsItBackWithTheTray)
{
    start();
    ASSERT_TRUE(awaitIcon());
    EXPECT_EQ(platformOf(session().program().processId()), "wayland");
    EXPECT_TRUE(windows().empty());
    for (int round = 0; round < 2; ++round) {
        desktop().stopBar();
        EXPECT_TRUE(session().program().isRunning());
        desktop().startBar();
        EXPECT_TRUE(awaitIcon());
    }
    EXPECT_THAT(desktop().tray().services(), SizeIs(1));
}

TEST_F(ProgramOnSway, BringsItsIconWhenATrayComesLate)
{
    desktop().stopBar();
    start();
    ProgramSession::waitForThrottle();
    session().deliver("text Your code is 59302.");
    ASSERT_TRUE(awaitWithPolling([this] { return desktop().clipboard().paste() == "59302"; }))
        << session().program().output() << session().program().errors();
    EXPECT_TRUE(windows().empty());

    desktop().startBar();
    ASSERT_NO_FATAL_FAILURE(open());
}

TEST_F(ProgramOnSway, ShowsItsWindowWhenTheUserStartsItWithoutATray)
{
    desktop().stopBar();
    start({});
    EXPECT_TRUE(awaitOpen());
    desktop().press("Escape");
    EXPECT_TRUE(awaitClosed());
    EXPECT_TRUE(session().program().isRunning());

    desktop().startBar();
    ASSERT_NO_FATAL_FAILURE(open());
}

TEST_F(ProgramOnSway, OpensAndClosesItsWindowAsThePanelRequestsLowerOnALowScreen)
{
    // 768 pixels high.
    desktop().command("output * scale 2");
    start();
    ASSERT_TRUE(awaitIcon());
    activate();
    ASSERT_TRUE(awaitOpen());
    EXPECT_TRUE(windows().front().isFloating);
    EXPECT_EQ(windows().front().area.width(), 300);
    EXPECT_LE(windows().front().area.height(), 768 / 2);
    runEventLoop(betweenClicks);
    activate();
    EXPECT_TRUE(awaitClosed());
    desktop().command("output * scale 1");
    runEventLoop(betweenClicks);
    activate();
    ASSERT_TRUE(awaitOpen());
    EXPECT_TRUE(windows().front().isWayland);
    EXPECT_EQ(windows().front().area.size(), QSize(300, 540));
}

TEST_F(ProgramOnSway, OpensAndClosesItsWindowOnClicks)
{
    start();
    ASSERT_TRUE(awaitIcon());
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(clickIcon());
        ASSERT_TRUE(awaitOpen());
        ASSERT_TRUE(clickIcon());
        EXPECT_TRUE(awaitClosed());
    }
    // No click was one too many.
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(windows().empty());
    const auto lines = linesOf(session().program().output());
    EXPECT_EQ(std::ranges::count(lines, "Opened PopupWindow : APPEAR"), 2);
}

TEST_F(ProgramOnSway, WaitsForThePointerThatTakesTheFocusAlong)
{
    const auto other = desktop().openOtherApplication();
    start();
    ASSERT_NO_FATAL_FAILURE(open());
    constexpr QPoint inTheOtherApplication(900, 700);
    desktop().movePointer(inTheOtherApplication);
    ASSERT_NO_FATAL_FAILURE(awaitFocusLost());
    runEventLoop(std::chrono::seconds(2));
    ASSERT_THAT(windows(), SizeIs(1));
    ASSERT_NO_FATAL_FAILURE(movePointerInside());
    runEventLoop(std::chrono::seconds(2));
    ASSERT_THAT(windows(), SizeIs(1));
    desktop().press("Escape");
    EXPECT_TRUE(awaitClosed());
}

TEST_F(ProgramOnSway, ClosesItsWindowOnASecondClickOnTheIconWithoutTheFocus)
{
    const auto other = desktop().openOtherApplication();
    start();
    ASSERT_NO_FATAL_FAILURE(open());
    desktop().movePointer({900, 700});
    ASSERT_NO_FATAL_FAILURE(awaitFocusLost());
    ASSERT_TRUE(clickIcon());
    EXPECT_TRUE(awaitClosed());
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_TRUE(windows().empty());
}

TEST_F(ProgramOnSway, ClosesItsWindowWhenAnotherApplicationTakesTheFocus)
{
    start();
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_NO_FATAL_FAILURE(movePointerInside());
    const auto other = desktop().openOtherApplication();
    EXPECT_TRUE(awaitClosed());
    const auto all = desktop().windows();
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_EQ(all.front().process, other->processId());
    EXPECT_TRUE(all.front().isFocused);
}

TEST_F(ProgramOnSway, CopiesTheCodeThatItsWindowShows)
{
    start();
    ASSERT_NO_FATAL_FAILURE(open());
    desktop().clipboard().copy("something that the user copied");
    clickInWindow("push button", "Copy");
    EXPECT_TRUE(awaitWithPolling([this] { return desktop().clipboard().paste() == "482913"; }))
        << desktop().clipboard().paste().value_or("nothing");
}

} // namespace
} // namespace orlimo
