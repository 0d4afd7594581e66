#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"
#include "tests/login/ScriptedLoginItemService.h"
#include "tests/support/ProgramOutcomes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Named so that it runs before the other tests, which install services for good.
TEST(LaunchAtLoginDeathTest, UseBeforeInstallIsFatal)
{
    try {
        LaunchAtLogin::setEnabled(true);
        ADD_FAILURE() << "no fatal stop";
    } catch (const FatalStopException& stop) {
        EXPECT_EQ(stop.reason, "launch at login has no services");
    }
}

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

TEST_F(LaunchAtLoginTest, EachOperationMakesItsCallsForEachStatus)
{
    const ServiceError registerError{.code = 1, .localizedDescription = "r"};
    const ServiceError unregisterError{.code = 1, .localizedDescription = "u"};
    for (const int status : {0, 1, 2, 3}) {
        for (const unsigned failing : {0U, 1U, 2U, 3U}) {
            SCOPED_TRACE(failing);
            service.registerError.reset();
            service.unregisterError.reset();
            if ((failing & 1U) != 0) {
                service.registerError = registerError;
            }
            if ((failing & 2U) != 0) {
                service.unregisterError = unregisterError;
            }
            const auto expectCalls = [&](bool value, std::vector<std::string> expected) {
                // Enabling ignores a failure to unregister first.
                if (value && service.registerError) {
                    expected.emplace_back(R"(log "enable", "r")");
                } else if (!value && service.unregisterError) {
                    expected.emplace_back(R"(log "disable", "u")");
                }
                service.currentStatus = static_cast<LoginItemStatus>(status);
                calls.clear();
                LaunchAtLogin::setEnabled(value);
                EXPECT_EQ(calls, expected) << status;
                service.currentStatus = static_cast<LoginItemStatus>(status);
                calls.clear();
                LaunchAtLogin::observable().setEnabled(value);
                EXPECT_EQ(calls, expected) << status;
            };
            expectCalls(false, {"objectWillChange", "unregister"});
            if (status == 1) {
                expectCalls(true, {"objectWillChange", "status", "unregister", "register"});
            } else {
                expectCalls(true, {"objectWillChange", "status", "register"});
            }
            service.currentStatus = static_cast<LoginItemStatus>(status);
            calls.clear();
            EXPECT_EQ(LaunchAtLogin::isEnabled(), status == 1) << status;
            EXPECT_EQ(LaunchAtLogin::observable().isEnabled(), status == 1) << status;
            EXPECT_THAT(calls, ElementsAre("status", "status")) << "nothing is cached";
        }
    }
}

TEST_F(LaunchAtLoginTest, FailureToRegisterAgainLeavesProgramUnregistered)
{
    service.currentStatus = LoginItemStatus::enabled;
    service.registerError = ServiceError{.code = 1, .localizedDescription = "r"};
    LaunchAtLogin::setEnabled(true);
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
}

TEST_F(LaunchAtLoginTest, LaterResponseIsAnnouncedAndItsFailureIsOneEntry)
{
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

} // namespace
} // namespace orlimo
