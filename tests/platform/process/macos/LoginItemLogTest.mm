#include "platform/process/LoginItemLog.h"

#include "tests/platform/macos/fakes/FakeObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace orlimo {
namespace {

TEST(LoginItemLog, ErrorIsLoggedUnlessErrorsAreOff)
{
    FakeObject& system = FakeObject::named("os_log");
    system.returns<BOOL>("isEnabledForType:", NO);
    logLoginItemError("enable", "reason");
    EXPECT_THAT(system.messages, testing::ElementsAre("isEnabledForType:"));

    system.returns<BOOL>("isEnabledForType:", YES);
    logLoginItemError(std::string_view("enabled").substr(0, 6), "%n");
    EXPECT_EQ(
        system.messages.back(),
        "app.orlimo.Orlimo.LaunchAtLogin main: Failed to %s launch at login: %s | enable | %n");
    FakeObject::resetAll();
}

} // namespace
} // namespace orlimo
