#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"
#include "tests/login/ScriptedLoginItemService.h"

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

/// With a scripted service and log, which write all calls into one list.
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
    LoginServices services{
        .service = service,
        .logError =
            [this](std::string_view operation, std::string_view reason) {
                calls.push_back(
                    "log \"" + std::string(operation) + "\", \"" + std::string(reason) + "\"");
            },
        .currentLaunchEvent = [] { return std::nullopt; }};
    QObject observer;
};

TEST_F(LaunchAtLoginTest, OnlyStatusEnabledIsEnabled)
{
    for (const int status : {0, 1, 2, 3}) {
        calls.clear();
        service.currentStatus = static_cast<LoginItemStatus>(status);
        EXPECT_EQ(isEnabled(), status == 1) << status;
        EXPECT_EQ(isEnabled(), status == 1) << status;
        EXPECT_THAT(calls, ElementsAre("status", "status")) << "nothing is cached";
    }
}

TEST_F(LaunchAtLoginTest, EnablingRegistersAndUnregistersFirstIfEnabled)
{
    for (const int status : {0, 1, 2, 3}) {
        calls.clear();
        service.currentStatus = static_cast<LoginItemStatus>(status);
        setEnabled(true);
        std::vector<std::string> expected{"objectWillChange", "status", "register"};
        if (status == 1) {
            expected.insert(expected.end() - 1, "unregister");
        }
        EXPECT_EQ(calls, expected) << status;
        EXPECT_TRUE(isEnabled());
    }
}

TEST_F(LaunchAtLoginTest, DisablingUnregistersWhateverTheStatus)
{
    for (const int status : {0, 1, 2, 3}) {
        calls.clear();
        service.currentStatus = static_cast<LoginItemStatus>(status);
        setEnabled(false);
        EXPECT_THAT(calls, ElementsAre("objectWillChange", "unregister")) << status;
    }
    EXPECT_FALSE(isEnabled());
}

TEST_F(LaunchAtLoginTest, FailureToRegisterIsOneEntry)
{
    service.currentStatus = LoginItemStatus::enabled;
    service.registerError = ServiceError{.code = 28, .localizedDescription = "No space left"};
    for (const bool isUnregistered : {true, false}) {
        calls.clear();
        setEnabled(true);
        EXPECT_THAT(
            calls,
            ElementsAre(
                "objectWillChange",
                "status",
                "unregister",
                "register",
                R"(log "enable", "No space left")"));
        EXPECT_EQ(isEnabled(), !isUnregistered);
        // The failure of the first step is ignored.
        service.currentStatus = LoginItemStatus::enabled;
        service.unregisterError = ServiceError{.code = 1, .localizedDescription = "ignored"};
    }
}

TEST_F(LaunchAtLoginTest, FailureToUnregisterIsOneEntry)
{
    service.unregisterError = ServiceError{.code = 2, .localizedDescription = "not registered"};
    setEnabled(false);
    EXPECT_THAT(
        calls, ElementsAre("objectWillChange", "unregister", R"(log "disable", "not registered")"));
}

TEST_F(LaunchAtLoginTest, SameValueIsSetAgain)
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

TEST_F(LaunchAtLoginTest, ChangeIsAnnouncedBeforeItIsMade)
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

/// With a service that reports its result only after the call.
class DelayedResponse : public LaunchAtLoginTest
{
protected:
    DelayedResponse() { LaunchAtLogin::install(services); }
};

TEST_F(DelayedResponse, IsAnnouncedAndFailureIsOneEntry)
{
    EXPECT_THAT(calls, IsEmpty());
    service.responseHandler(true, std::nullopt);
    const ServiceError error{.code = 125, .localizedDescription = "Operation canceled"};
    service.responseHandler(true, error);
    service.responseHandler(false, error);
    EXPECT_THAT(
        calls,
        ElementsAre(
            "objectWillChange",
            "objectWillChange",
            R"(log "enable", "Operation canceled")",
            "objectWillChange",
            R"(log "disable", "Operation canceled")"));
}

TEST_F(LaunchAtLoginTest, OpenEventWithLoginPropertyIsLaunchAtLogin)
{
    struct Case
    {
        std::optional<LaunchEvent> event;
        bool isAtLogin;
    };
    constexpr FourCharacterCode open = 0x6F617070;
    constexpr FourCharacterCode loginItem = 0x6C676974;
    for (const auto& [event, isAtLogin] : {
             Case{LaunchEvent{open, loginItem}, true},
             Case{std::nullopt, false},
             Case{LaunchEvent{open, std::nullopt}, false},
             Case{LaunchEvent{open, 0x6C676975U}, false},
             Case{LaunchEvent{open, 0U}, false},
             Case{LaunchEvent{open, open}, false},
             Case{LaunchEvent{fourCharacterCode("rapp"), loginItem}, false},
             Case{LaunchEvent{fourCharacterCode("OAPP"), loginItem}, false},
             Case{LaunchEvent{loginItem, loginItem}, false},
         })
    {
        services.currentLaunchEvent = [&event = event] { return event; };
        LaunchAtLogin::install(services);
        EXPECT_EQ(LaunchAtLogin::wasLaunchedAtLogin(), isAtLogin) << (event ? event->eventId : 0);
    }
    EXPECT_THAT(calls, IsEmpty());
}

TEST(LaunchAtLoginType, HasNoInstancesAndOneObservable)
{
    EXPECT_FALSE(std::is_default_constructible_v<LaunchAtLogin>);
    EXPECT_FALSE(std::is_default_constructible_v<LaunchAtLogin::Observable>);
    EXPECT_EQ(&LaunchAtLogin::observable(), &LaunchAtLogin::observable());
}

} // namespace
} // namespace orlimo
