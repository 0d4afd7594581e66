#pragma once

#include "tests/desktop/sessions/wayland/KWinSession.h"
#include "tests/desktop/sessions/wayland/MutterSession.h"
#include "tests/desktop/sessions/wayland/SwaySession.h"
#include "tests/program/ProgramSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The Wayland desktop that this program's tests are about.
using WaylandDesktop = ORLIMO_WAYLAND_DESKTOP;

/// A test on a Wayland desktop of its own, skipped on a machine that has none.
class WaylandTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (const std::string reason = WaylandDesktop::skipReason(); !reason.empty()) {
            GTEST_SKIP() << reason;
        }
        ownDesktop.emplace();
    }

    [[nodiscard]] WaylandDesktop& desktop() { return *ownDesktop; }
    [[nodiscard]] ProgramSession& session() { return *ownSession; }
    [[nodiscard]] ChildProcess& program() { return session().program(); }

    [[nodiscard]] ChildSettings onDesktop(std::vector<std::string> arguments = {})
    {
        return {
            .arguments = std::move(arguments),
            .environment = desktop().environment(),
            .beforeStart = dieWithParent};
    }

    /// Makes the program's session, and its store. Started as at login, the program does not open
    /// its window by itself for want of a tray. Qt picks the platform unless one is given.
    void prepare(
        std::vector<std::string> arguments = {"--launched-at-login"},
        const std::optional<std::string>& platform = {})
    {
        auto variables = desktop().environment();
        variables["QT_QPA_PLATFORM"] = platform;
        ownSession.emplace(ProgramSession::Settings{
            .arguments = std::move(arguments),
            .environment = std::move(variables),
            .beforeStart = dieWithParent});
    }

    /// Delivers a message with `code` once the throttle is open, and expects that it is copied.
    void deliver(const std::string& code)
    {
        session().awaitOpenThrottle();
        session().deliver("text Your code is " + code + ".");
        EXPECT_EQ(session().readReaction().back(), ProgramSession::reactionPrefix + code);
    }

    /// Waits until `expected` is what another program pastes.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& expected)
    {
        std::optional<std::string> found;
        const auto isDecided = [&] {
            return (found = desktop().clipboard().paste()) == expected || !desktop().isRunning();
        };
        if (awaitWithPolling(isDecided) && found == expected) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << "the clipboard holds "
               << (found ? '"' + *found + '"' : "nothing: " + desktop().clipboard().problem())
               << (desktop().isRunning() ? ""
                                         : "\nthe compositor has ended:\n" + desktop().output());
    }

private:
    std::optional<WaylandDesktop> ownDesktop;
    std::optional<ProgramSession> ownSession;
};

/// The program's own clipboard backend, in a small program that never has a window.
class PasteboardOnWayland : public WaylandTest
{
protected:
    void SetUp() override
    {
        WaylandTest::SetUp();
        if (!IsSkipped()) {
            ownProbe.emplace(ORLIMO_CLIPBOARD_PROBE, onDesktop());
        }
    }

    [[nodiscard]] ChildProcess& probe() { return *ownProbe; }

    void put(const std::string& command) { ASSERT_EQ(probe().ask(command), "done"); }

private:
    std::optional<ChildProcess> ownProbe;
};

} // namespace orlimo
