#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"
#include "tests/login/ScriptedLoginItemService.h"
#include "tests/login/ServiceUnderTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A log that writes each entry into a list.
class RecordingLog final : public UnifiedLog
{
public:
    explicit RecordingLog(std::vector<std::string>& callList)
        : calls(callList)
    {}

    void error(std::string_view format, std::string_view first, std::string_view second) override
    {
        calls.push_back(
            "log \"" + std::string(format) + "\", \"" + std::string(first) + "\", \"" +
            std::string(second) + "\"");
    }

private:
    std::vector<std::string>& calls;
};

/// With a service and a log that do what the test says, and everything that happens in one list.
class LaunchAtLoginTest : public testing::Test
{
protected:
    LaunchAtLoginTest()
    {
        LaunchAtLogin::install(services);
        QObject::connect(
            &LaunchAtLogin::observable(),
            &LaunchAtLogin::Observable::objectWillChange,
            &observer,
            [this] { calls.emplace_back("objectWillChange"); });
    }

    void setEnabled(bool enabled) { LaunchAtLogin::setEnabled(enabled); }
    [[nodiscard]] bool isEnabled() const { return LaunchAtLogin::isEnabled(); }

    std::vector<std::string> calls;
    ScriptedLoginItemService service{calls};
    RecordingLog log{calls};
    LoginServices services{
        .service = serviceUnderTest(service),
        .logger = [this]() -> UnifiedLog& {
            calls.emplace_back("logger");
            return log;
        },
        .currentLaunchEvent = [] { return std::nullopt; }};
    QObject observer;
};

TEST_F(LaunchAtLoginTest, IsEnabledForTheStatusEnabledAlone)
{
    for (const int status : {0, 1, 2, 3}) {
        service.currentStatus = static_cast<LoginItemStatus>(status);
        EXPECT_EQ(isEnabled(), status == 1) << status;
    }
}

TEST_F(LaunchAtLoginTest, AsksTheServiceAtEachReading)
{
    (void)isEnabled();
    (void)isEnabled();
    EXPECT_THAT(calls, ElementsAre("status", "status"));
}

TEST_F(LaunchAtLoginTest, EnablingAnnouncesAndThenRegisters)
{
    setEnabled(true);
    EXPECT_THAT(calls, ElementsAre("objectWillChange", "status", "register"));
    EXPECT_TRUE(isEnabled());
}

TEST_F(LaunchAtLoginTest, EnablingWhatIsEnabledUnregistersFirst)
{
    service.currentStatus = LoginItemStatus::enabled;
    setEnabled(true);
    EXPECT_THAT(calls, ElementsAre("objectWillChange", "status", "unregister", "register"));
    EXPECT_TRUE(isEnabled());
}

TEST_F(LaunchAtLoginTest, EnablingRegistersOnlyWhereTheStatusIsAnyOther)
{
    for (const auto status :
         {LoginItemStatus::notRegistered,
          LoginItemStatus::requiresApproval,
          LoginItemStatus::notFound})
    {
        calls.clear();
        service.currentStatus = status;
        setEnabled(true);
        EXPECT_THAT(calls, ElementsAre("objectWillChange", "status", "register"));
    }
}

TEST_F(LaunchAtLoginTest, AFailureToUnregisterFirstIsIgnored)
{
    service.currentStatus = LoginItemStatus::enabled;
    service.unregisterError = ServiceError{.code = 1, .localizedDescription = "no"};
    setEnabled(true);
    EXPECT_THAT(calls, ElementsAre("objectWillChange", "status", "unregister", "register"));
}

TEST_F(LaunchAtLoginTest, AFailureToRegisterIsOneEntry)
{
    service.registerError = ServiceError{.code = 13, .localizedDescription = "Permission denied"};
    setEnabled(true);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "status",
            "register",
            "logger",
            R"(log "Failed to %s launch at login: %s", "enable", "Permission denied")"));
}

TEST_F(LaunchAtLoginTest, AFailureToRegisterAfreshLeavesTheProgramUnregistered)
{
    service.currentStatus = LoginItemStatus::enabled;
    service.registerError = ServiceError{.code = 28, .localizedDescription = "No space left"};
    setEnabled(true);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "status",
            "unregister",
            "register",
            "logger",
            R"(log "Failed to %s launch at login: %s", "enable", "No space left")"));
    EXPECT_FALSE(isEnabled());
}

TEST_F(LaunchAtLoginTest, BothFailuresAreStillOneEntry)
{
    service.currentStatus = LoginItemStatus::enabled;
    service.unregisterError = ServiceError{.code = 1, .localizedDescription = "first"};
    service.registerError = ServiceError{.code = 2, .localizedDescription = "second"};
    setEnabled(true);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "status",
            "unregister",
            "register",
            "logger",
            R"(log "Failed to %s launch at login: %s", "enable", "second")"));
}

TEST_F(LaunchAtLoginTest, DisablingUnregistersWithoutAskingFirst)
{
    for (const int status : {0, 1, 2, 3}) {
        calls.clear();
        service.currentStatus = static_cast<LoginItemStatus>(status);
        setEnabled(false);
        EXPECT_THAT(calls, ElementsAre("objectWillChange", "unregister")) << status;
    }
    EXPECT_FALSE(isEnabled());
}

TEST_F(LaunchAtLoginTest, AFailureToUnregisterIsOneEntry)
{
    service.unregisterError = ServiceError{.code = 2, .localizedDescription = "not registered"};
    setEnabled(false);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "unregister",
            "logger",
            R"(log "Failed to %s launch at login: %s", "disable", "not registered")"));
}

TEST_F(LaunchAtLoginTest, TheSameValueTwiceIsDoneTwice)
{
    setEnabled(true);
    setEnabled(true);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "status",
            "register",
            "objectWillChange",
            "status",
            "unregister",
            "register"));
    calls.clear();
    setEnabled(false);
    setEnabled(false);
    EXPECT_THAT(
        calls, ElementsAre("objectWillChange", "unregister", "objectWillChange", "unregister"));
}

TEST_F(LaunchAtLoginTest, NobodySeesTheChangeBeforeItIsAnnounced)
{
    std::vector<bool> seen;
    QObject::connect(
        &LaunchAtLogin::observable(),
        &LaunchAtLogin::Observable::objectWillChange,
        &observer,
        [this, &seen] { seen.push_back(isEnabled()); });
    setEnabled(true);
    setEnabled(false);
    EXPECT_THAT(seen, ElementsAre(false, true));
}

TEST_F(LaunchAtLoginTest, WhatNeedsApprovalIsNotEnabled)
{
    service.currentStatus = LoginItemStatus::requiresApproval;
    EXPECT_FALSE(isEnabled());
}

/// With a service that answers only after the call, which not every host has.
class DelayedResponse : public LaunchAtLoginTest
{
protected:
    DelayedResponse()
    {
        LaunchAtLogin::install(
            {.service = service,
             .logger = services.logger,
             .currentLaunchEvent = services.currentLaunchEvent});
    }
};

TEST_F(DelayedResponse, IsAnnounced)
{
    EXPECT_THAT(calls, IsEmpty());
    service.responseHandler(true, std::nullopt);
    EXPECT_THAT(calls, ElementsAre("objectWillChange"));
}

TEST_F(DelayedResponse, IsOneEntryWhenItIsAFailure)
{
    const ServiceError error{.code = 125, .localizedDescription = "Operation canceled"};
    service.responseHandler(true, error);
    service.responseHandler(false, error);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "logger",
            R"(log "Failed to %s launch at login: %s", "enable", "Operation canceled")",
            "objectWillChange",
            "logger",
            R"(log "Failed to %s launch at login: %s", "disable", "Operation canceled")"));
}

/// How the program was launched, by the event that is being handled.
class LaunchedAtLogin : public LaunchAtLoginTest
{
protected:
    [[nodiscard]] bool with(std::optional<LaunchEvent> event)
    {
        services.currentLaunchEvent = [event] { return event; };
        LaunchAtLogin::install(services);
        return LaunchAtLogin::wasLaunchedAtLogin();
    }
};

TEST_F(LaunchedAtLogin, ByAnOpenApplicationEventThatSaysSo)
{
    EXPECT_TRUE(with(LaunchEvent{.eventId = 0x6F617070, .propertyData = 0x6C676974}));
}

TEST_F(LaunchedAtLogin, NotWithoutAnEvent)
{
    EXPECT_FALSE(with(std::nullopt));
}

TEST_F(LaunchedAtLogin, NotByAnotherEvent)
{
    for (const char* other : {"rapp", "odoc", "quit", "OAPP", "lgit"}) {
        EXPECT_FALSE(
            with(LaunchEvent{.eventId = fourCharacterCode(other), .propertyData = 0x6C676974}))
            << other;
    }
}

TEST_F(LaunchedAtLogin, NotWithoutPropertyData)
{
    EXPECT_FALSE(with(LaunchEvent{.eventId = 0x6F617070, .propertyData = std::nullopt}));
}

TEST_F(LaunchedAtLogin, NotWithOtherPropertyData)
{
    for (const FourCharacterCode other : {0x6C676975U, 0U, 0x6F617070U, 0x7469676CU}) {
        EXPECT_FALSE(with(LaunchEvent{.eventId = 0x6F617070, .propertyData = other})) << other;
    }
}

TEST_F(LaunchedAtLogin, NothingIsWrittenAndTheServiceIsNotAsked)
{
    (void)with(std::nullopt);
    EXPECT_THAT(calls, IsEmpty());
}

TEST(LaunchAtLoginNatively, IsANamespaceWithoutInstances)
{
    EXPECT_FALSE(std::is_default_constructible_v<LaunchAtLogin>);
    EXPECT_FALSE(std::is_default_constructible_v<LaunchAtLogin::Observable>);
}

TEST(LaunchAtLoginNatively, HasOneObservable)
{
    EXPECT_EQ(&LaunchAtLogin::observable(), &LaunchAtLogin::observable());
}

} // namespace
} // namespace orlimo
