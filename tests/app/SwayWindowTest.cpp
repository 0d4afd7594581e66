#include "tests/app/ProgramSession.h"
#include "tests/app/SwaySession.h"
#include "tests/support/OutputCapture.h"
#include "tests/support/ParentBond.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

using testing::SizeIs;

/// The program on a Wayland desktop whose bar has a tray.
class ProgramOnSway : public testing::Test
{
protected:
    void start()
    {
        session.startWriter();
        session.deliver("text Your code is 482913.");
        session.startProgram();
        ASSERT_TRUE(session.program().awaitLine("file access allowed"))
            << session.program().errors();
    }

    [[nodiscard]] testing::AssertionResult awaitIcon()
    {
        if (awaitSparingly([this] { return icon().has_value(); })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "no icon in the tray; " << session.program().errors();
    }

    /// The program's icon: its name on the bus.
    [[nodiscard]] std::optional<std::string> icon() const
    {
        for (const std::string& service : desktop.tray().services()) {
            if (desktop.tray().titleOf(service) == "Orlimo") {
                return service;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] std::vector<SwayWindow> windows()
    {
        return desktop.windowsOf(session.program().processId());
    }

    [[nodiscard]] bool awaitOpen()
    {
        return awaitSparingly([this] {
            const auto all = windows();
            return all.size() == 1 && all.front().isFocused;
        });
    }

    [[nodiscard]] bool awaitClosed()
    {
        return awaitSparingly([this] { return windows().empty(); });
    }

    void activate()
    {
        ASSERT_TRUE(awaitIcon());
        desktop.tray().activate(*icon(), SwaySession::onlyIcon.x(), SwaySession::onlyIcon.y());
    }

    SwaySession desktop;
    ProgramSession session{{.environment = desktop.environment(), .beforeStart = endWithParent}};
};

TEST_F(ProgramOnSway, HasItsIconInTheTray)
{
    start();
    EXPECT_TRUE(awaitIcon());
    EXPECT_THAT(desktop.tray().services(), SizeIs(1));
    EXPECT_TRUE(windows().empty());
}

TEST_F(ProgramOnSway, BringsItsIconBackWhenTheTrayComesBack)
{
    start();
    ASSERT_TRUE(awaitIcon());
    for (int round = 0; round < 3; ++round) {
        desktop.stopBar();
        EXPECT_TRUE(session.program().isRunning());
        desktop.startBar();
        EXPECT_TRUE(awaitIcon());
    }
    EXPECT_THAT(desktop.tray().services(), SizeIs(1));
}

TEST_F(ProgramOnSway, BringsItsIconWhenATrayComesLate)
{
    desktop.stopBar();
    start();
    session.awaitOpenThrottle();
    session.deliver("text Your code is 59302.");
    ASSERT_TRUE(awaitSparingly([this] { return desktop.clipboard().paste() == "59302"; }));
    EXPECT_TRUE(windows().empty());

    desktop.startBar();
    EXPECT_TRUE(awaitIcon());
    activate();
    EXPECT_TRUE(awaitOpen());
}

TEST_F(ProgramOnSway, OpensAndClosesItsWindowOnClicks)
{
    start();
    for (int round = 0; round < 3; ++round) {
        activate();
        ASSERT_TRUE(awaitOpen());
        EXPECT_TRUE(windows().front().isWayland);
        EXPECT_EQ(windows().front().area.size(), QSize(300, 540));
        activate();
        EXPECT_TRUE(awaitClosed());
    }
}

} // namespace
} // namespace orlimo
