#pragma once

#include "tests/app/DesktopSession.h"
#include "tests/app/ProgramSession.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The built program on a desktop of its own, used as a person uses it: with the pointer, the
/// keyboard, and what can be read off the screen.
class DesktopProgram
{
public:
    /// Makes the desktop and the program's session and starts the writer; the program itself waits
    /// for `start`. The desktop's environment is added to that of `settings`.
    explicit DesktopProgram(ProgramSession::Settings settings = {});

    /// Starts the program and waits until it watches the store and its icon is in the tray.
    void start();

    /// Clicks the icon in the tray.
    void clickIcon(int button = 1);

    /// Clicks the icon and waits until the window is open and has the focus.
    void open();

    /// Presses Escape and waits until the window is closed.
    void close();

    /// Waits until the window is open and has the focus; says what is there instead when it does
    /// not come.
    [[nodiscard]] testing::AssertionResult awaitOpen();
    [[nodiscard]] testing::AssertionResult awaitClosed();

    /// The program's window under the icon. None while it is closed.
    [[nodiscard]] std::optional<XWindow> window();

    /// Every window of the program, the lowest first.
    [[nodiscard]] std::vector<XWindow> windows();

    /// What the program shows under this role and name. Waits for it; a test failure when it does
    /// not come.
    [[nodiscard]] Accessible element(const std::string& role, const std::string& name);

    /// Whether it shows that now.
    [[nodiscard]] bool shows(const std::string& role, const std::string& name) const;

    /// Clicks the middle of such an element.
    void click(const std::string& role, const std::string& name);

    /// Waits until the clipboard holds `text`.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& text) const;

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
    [[nodiscard]] std::uint32_t processId();
    [[nodiscard]] std::string describe();

    DesktopSession ownDesktop;
    ProgramSession ownSession;
};

} // namespace orlimo
