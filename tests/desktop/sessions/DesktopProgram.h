#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/program/ProgramSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The built program on a desktop of its own, used as a person uses it: with the pointer, the
/// keyboard, and what can be read off the screen. What a person needs and does not find, however
/// long they wait, ends the test with an exception that describes the desktop; so does a wait that
/// fails.
class DesktopProgram
{
public:
    /// Makes the desktop, with a screen of that width, height and depth, and the program's session,
    /// and starts the writer; the program itself waits for `start`. The desktop's environment is
    /// added to that of `settings`.
    explicit DesktopProgram(
        ProgramSession::Settings settings = {}, const std::string& screen = "1280x800x24");

    /// Starts the program and waits until it watches the store and its icon is in the tray.
    void start();

    /// Clicks the icon in the tray, at the pace of a person: not so soon after the last click, or
    /// after the window opened for it or closed, that both count as one.
    void clickIcon();
    void doubleClickIcon();

    /// Clicks the icon and waits until the window is open and has the focus.
    void open();

    /// Presses Escape and waits until the window is closed.
    void close();

    /// Waits until the window is open and has the focus.
    [[nodiscard]] testing::AssertionResult awaitOpen();
    [[nodiscard]] testing::AssertionResult awaitClosed();

    /// Waits until the program has `count` windows.
    [[nodiscard]] testing::AssertionResult awaitWindows(std::size_t count)
    {
        return awaitCondition([&] { return windows().size() == count; });
    }

    /// Whether another application's window is above `window`.
    [[nodiscard]] bool isCovered(const XWindow& window) const;

    /// The program's window under the icon. None while it is closed.
    [[nodiscard]] std::optional<XWindow> window();

    /// Every window of the program, the lowest first.
    [[nodiscard]] std::vector<XWindow> windows()
    {
        return ownDesktop.windows().windowsOf(processId());
    }

    [[nodiscard]] bool hasFocus(const XWindow& window) const;

    /// What the program shows under this role and name. Waits for it.
    [[nodiscard]] Accessible element(const std::string& role, const std::string& name);

    /// Whether it shows that now.
    [[nodiscard]] bool shows(const std::string& role, const std::string& name) const
    {
        return ownDesktop.accessibility().find(role, name).has_value();
    }

    /// Waits until it shows that: a program is on the accessibility bus only some time after it has
    /// started.
    [[nodiscard]] testing::AssertionResult
    awaitShown(const std::string& role, const std::string& name)
    {
        return awaitCondition([&] { return shows(role, name); });
    }

    /// Clicks the middle of such an element.
    void click(const std::string& role, const std::string& name)
    {
        ownDesktop.click(element(role, name).area().center());
    }

    /// Waits until the clipboard holds `text`.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& text);

    /// Waits until exactly these preferences are stored.
    [[nodiscard]] testing::AssertionResult
    awaitPreferences(const std::map<std::string, std::string>& expected) const;

    /// How often the program has printed `line` so far.
    [[nodiscard]] long count(const std::string& line);

    [[nodiscard]] DesktopSession& desktop() { return ownDesktop; }
    [[nodiscard]] ProgramSession& session() { return ownSession; }
    /// The running program.
    [[nodiscard]] ChildProcess& process() { return ownSession.program(); }

    /// The line that the program prints each time its window opens.
    static constexpr const char* appearLine = "Opened PopupWindow : APPEAR";
    /// The line that it prints each time it reads the newest messages.
    static constexpr const char* readLine = "ready to access disk";

private:
    /// A failure describes the desktop.
    [[nodiscard]] testing::AssertionResult awaitCondition(const std::function<bool()>& condition);
    [[nodiscard]] std::uint32_t processId()
    {
        return static_cast<std::uint32_t>(process().processId());
    }
    [[nodiscard]] QPoint awaitIcon();
    void require(bool condition, const std::string& failure);
    [[nodiscard]] std::string describe();

    DesktopSession ownDesktop;
    ProgramSession ownSession;
    std::chrono::steady_clock::time_point lastClick;
};

} // namespace orlimo
