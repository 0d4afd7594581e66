#pragma once

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A real X server without a screen that anybody sees, and its selections read and written from
/// outside by another program. Ended with the object.
class XServer
{
public:
    /// Starts the server with one screen, its width, height and depth as given; one that does not
    /// start is a test failure.
    explicit XServer(const std::string& screen = "1280x800x24");
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;
    ~XServer();

    /// The value of DISPLAY for programs that are to use it.
    [[nodiscard]] const std::string& display() const { return name; }

    /// Has the server stand still: programs that ask it for something wait until it goes on.
    void freeze() const { server.signal(SIGSTOP); }
    void thaw() const { server.signal(SIGCONT); }

    /// What a program pastes from `selection`, "clipboard" or "primary", as `target`; empty when
    /// nobody owns it or the owner does not hand it over within ten seconds.
    [[nodiscard]] std::string
    paste(const std::string& selection, const std::string& target = "UTF8_STRING") const;

    /// Waits until a program pastes `expected`; a failure says what it pastes instead.
    [[nodiscard]] testing::AssertionResult
    awaitPaste(const std::string& expected, const std::string& selection = "clipboard") const;

    /// The targets that the owner of `selection` offers.
    [[nodiscard]] std::vector<std::string> targets(const std::string& selection) const
    {
        return linesOf(paste(selection, "TARGETS"));
    }

    /// Makes another program own `selection` with `text` and a line break, and waits until it does.
    void copy(const std::string& selection, const std::string& text) const;

private:
    ChildProcess server;
    std::string name;
    mutable std::string lastProblem;
};

/// Makes a program of X, in this environment, own `selection` with `text` and a line break soon.
void copyWithXclip(
    const std::map<std::string, std::optional<std::string>>& environment,
    const std::string& selection,
    const std::string& text);

} // namespace orlimo
