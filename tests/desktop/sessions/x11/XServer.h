#pragma once

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <QPoint>
#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// Makes a program of X, in this environment, own `selection` with `text` and a line break soon.
inline void copyWithXclip(
    const std::map<std::string, std::optional<std::string>>& environment,
    const std::string& selection,
    const std::string& text)
{
    // The tool leaves a process behind that owns the selection, soon after it ends itself.
    const auto tool = runTool(
        "/usr/bin/xclip",
        {.arguments = {"-i", "-selection", selection}, .environment = environment},
        text + "\n");
    EXPECT_EQ(tool.status, 0) << tool.errors;
}

/// A real X server without a screen that anybody sees. Its pointer, its keyboard and its selections
/// are used from outside of the programs on it, as a person and other programs use them. Ended with
/// the object.
class XServer
{
public:
    /// Starts the server with one screen, its width, height and depth as given; one that does not
    /// start is a test failure.
    explicit XServer(const std::string& screen = "1280x800x24")
        // The server picks a free display and writes its number to standard output. It keeps what
        // it has when its last client goes, for the next one.
        : server(
              "/usr/bin/Xvfb",
              {
                  .arguments =
                      {"-displayfd", "1", "-noreset", "-screen", "0", screen, "-nolisten", "tcp"},
                  .beforeStart = dieWithParent,
              })
    {
        const auto number = server.readLine();
        EXPECT_TRUE(number.has_value()) << server.errors();
        name = ":" + number.value_or("");
    }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;
    // Asked to end, it takes its lock and its socket away.
    ~XServer() { server.terminate(); }

    /// The value of DISPLAY for programs that are to use it.
    [[nodiscard]] const std::string& display() const { return name; }

    /// Has the server stand still: programs that ask it for something wait until it goes on.
    void freeze() const { server.signal(SIGSTOP); }
    void thaw() const { server.signal(SIGCONT); }

    void movePointer(const QPoint& point) const { controlAt(point, {}); }

    /// Moves the pointer to `point` of the screen and presses `button`: 1 left, 2 middle, 3 right.
    void click(const QPoint& point, int button = 1) const
    {
        controlAt(point, {"click", std::to_string(button)});
    }
    void doubleClick(const QPoint& point) const
    {
        controlAt(point, {"click", "--repeat", "2", "--delay", "100", "1"});
    }

    /// Presses and releases keys, named as X names them: "Escape", "alt+F4".
    void press(const std::string& keys) const { control({"key", keys}); }

    /// What a program pastes from `selection`, "clipboard" or "primary", as `target`; empty when
    /// nobody owns it or the owner does not hand it over within ten seconds.
    [[nodiscard]] std::string
    paste(const std::string& selection, const std::string& target = "UTF8_STRING") const
    {
        const auto tool = runTool(
            "/usr/bin/xclip",
            {.arguments = {"-o", "-selection", selection, "-t", target},
             .environment = {{"DISPLAY", name}}});
        lastProblem = tool.errors;
        return tool.status == 0 ? tool.output : "";
    }

    /// Waits until a program pastes `expected`; a failure says what it pastes instead.
    [[nodiscard]] testing::AssertionResult
    awaitPaste(const std::string& expected, const std::string& selection = "clipboard") const
    {
        std::string found;
        if (awaitWithPolling([&] { return (found = paste(selection)) == expected; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << "the " << selection << " holds \"" << found << "\" instead of \"" << expected
               << "\" " << lastProblem;
    }

    /// The targets that the owner of `selection` offers.
    [[nodiscard]] std::vector<std::string> targets(const std::string& selection) const
    {
        return linesOf(paste(selection, "TARGETS"));
    }

    /// Makes another program own `selection` with `text` and a line break, and waits until it does.
    void copy(const std::string& selection, const std::string& text) const
    {
        copyWithXclip({{"DISPLAY", name}}, selection, text);
        EXPECT_TRUE(awaitPaste(text + "\n", selection));
    }

private:
    void controlAt(const QPoint& point, const std::vector<std::string>& action) const
    {
        std::vector<std::string> arguments{
            "mousemove", std::to_string(point.x()), std::to_string(point.y())};
        arguments.insert(arguments.end(), action.begin(), action.end());
        control(std::move(arguments));
    }

    void control(std::vector<std::string> arguments) const
    {
        const auto tool = runTool(
            "/usr/bin/xdotool",
            {.arguments = std::move(arguments), .environment = {{"DISPLAY", name}}});
        EXPECT_EQ(tool.status, 0) << tool.errors;
    }

    ChildProcess server;
    std::string name;
    mutable std::string lastProblem;
};

} // namespace orlimo
