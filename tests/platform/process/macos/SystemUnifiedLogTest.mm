#include "platform/process/UnifiedLog.h"
#include "tests/platform/macos/fakes/FakeObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

using testing::Contains;

class SystemUnifiedLogTest : public testing::Test
{
protected:
    SystemUnifiedLogTest() { system.returns<BOOL>("isEnabledForType:", YES); }
    ~SystemUnifiedLogTest() override { FakeObject::resetAll(); }

    FakeObject& system = FakeObject::named("os_log");
    std::unique_ptr<UnifiedLog> log = UnifiedLog::create("org.example.part", "main");
};

TEST_F(SystemUnifiedLogTest, KeepsTheFormatInUseAndItsArgumentsApart)
{
    // Neither the format nor the arguments need an end of their own.
    constexpr std::string_view format = "Failed to %s launch at login: %s!";
    log->error(format.substr(0, format.size() - 1), std::string_view("enabled").substr(0, 6), "%n");
    EXPECT_THAT(
        system.messages,
        Contains("org.example.part main: Failed to %s launch at login: %s | enable | %n"));
}

TEST_F(SystemUnifiedLogTest, AnyOtherFormatIsFilledInAndPrivateAsAWhole)
{
    log->error("to %s: %s.", "a", "%{public}s");
    EXPECT_THAT(system.messages, Contains("org.example.part main: %s | to a: %{public}s."));
}

TEST_F(SystemUnifiedLogTest, WritesNothingWhereErrorsAreSwitchedOff)
{
    system.returns<BOOL>("isEnabledForType:", NO);
    log->error("%s%s", "a", "b");
    EXPECT_THAT(system.messages, testing::ElementsAre("isEnabledForType:"));
}

} // namespace
} // namespace orlimo
