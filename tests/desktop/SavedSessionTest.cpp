#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/desktop/sessions/SessionManager.h"

#include <gtest/gtest.h>

#include <X11/SM/SM.h>

namespace orlimo {
namespace {

TEST(SavedSession, IsNotRestarted)
{
    SessionManager manager;
    DesktopProgram program({.environment = {{"SESSION_MANAGER", manager.address()}}});
    program.session().startProgram();
    ASSERT_TRUE(manager.awaitClient());
    EXPECT_TRUE(manager.save());
    EXPECT_EQ(manager.restartStyle(), SmRestartNever);
    EXPECT_TRUE(program.process().isRunning());
}

} // namespace
} // namespace orlimo
