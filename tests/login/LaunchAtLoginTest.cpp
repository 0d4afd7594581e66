#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"
#include "tests/login/ScriptedLoginItemService.h"
#include "tests/support/CapturedSyslog.h"
#include "tests/support/ForkedRun.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <syslog.h>

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
        QObject::connect(
            &LaunchAtLogin::observable(),
            &LaunchAtLogin::Observable::objectWillChange,
            &observer,
            [this] { calls.emplace_back("objectWillChange"); });
    }

    void setEnabled(bool enabled) { LaunchAtLogin::setEnabled(enabled, host); }
    [[nodiscard]] bool isEnabled() const { return LaunchAtLogin::isEnabled(host); }

    std::vector<std::string> calls;
    ScriptedLoginItemService service{calls};
    RecordingLog log{calls};
    LoginHost host{
        .service = service,
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

TEST_F(LaunchAtLoginTest, ALateAnswerIsAnnounced)
{
    LaunchAtLogin::followAnswers(host);
    EXPECT_THAT(calls, IsEmpty());
    service.answered(true, std::nullopt);
    EXPECT_THAT(calls, ElementsAre("objectWillChange"));
}

TEST_F(LaunchAtLoginTest, ALateFailureIsOneEntryToo)
{
    LaunchAtLogin::followAnswers(host);
    const ServiceError error{.code = 125, .localizedDescription = "Operation canceled"};
    service.answered(true, error);
    service.answered(false, error);
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
        host.currentLaunchEvent = [event] { return event; };
        return LaunchAtLogin::wasLaunchedAtLogin(host);
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

TEST(LaunchAtLoginNatively, KnowsTheLaunchOnlyWhileItIsHandled)
{
    EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
    {
        const LaunchEventHandling handling(true);
        EXPECT_TRUE(LaunchAtLogin::wasLaunchedAtLogin());
    }
    EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
    const LaunchEventHandling handling(false);
    EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
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

/// The running program in a configuration folder of the test's; in a process of its own, for the
/// folder is named by a variable.
class LaunchAtLoginOnDisk : public testing::Test
{
protected:
    [[nodiscard]] std::string sayAll(const std::function<void()>& work) const
    {
        const auto run = runForked([this, &work] {
            ::setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
            const CapturedSyslog syslog;
            work();
            for (const auto& [priority, text] : CapturedSyslog::entries()) {
                (void)std::printf("%d %s\n", priority, text.c_str());
            }
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    TemporaryFolder home;
    std::filesystem::path configuration = home.path() / "configuration";
    std::filesystem::path entry = configuration / "autostart/app.orlimo.Orlimo.desktop";
};

void sayState(bool enabled)
{
    (void)std::puts(enabled ? "on" : "off");
}

TEST_F(LaunchAtLoginOnDisk, ComesAndGoesWithItsEntry)
{
    EXPECT_EQ(
        sayAll([this] {
            sayState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(true);
            sayState(LaunchAtLogin::isEnabled());
            sayState(std::filesystem::exists(entry));
            LaunchAtLogin::setEnabled(true);
            sayState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(false);
            sayState(LaunchAtLogin::isEnabled());
            sayState(std::filesystem::exists(entry));
        }),
        "off\non\non\non\noff\noff\n");
}

TEST_F(LaunchAtLoginOnDisk, TheObservableForwards)
{
    EXPECT_EQ(
        sayAll([] {
            LaunchAtLogin::Observable& observable = LaunchAtLogin::observable();
            sayState(observable.isEnabled());
            observable.setEnabled(true);
            sayState(observable.isEnabled());
            sayState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(false);
            sayState(observable.isEnabled());
        }),
        "off\non\non\noff\n");
}

TEST_F(LaunchAtLoginOnDisk, WhatTheUserHasSwitchedOffStaysOff)
{
    EXPECT_EQ(
        sayAll([this] {
            writeFile(entry, "[Desktop Entry]\nHidden=true\n");
            LaunchAtLogin::setEnabled(true);
            sayState(LaunchAtLogin::isEnabled());
        }),
        "off\n");
    EXPECT_THAT(contentOf(entry), testing::HasSubstr("\nHidden=true\n"));
    EXPECT_THAT(contentOf(entry), testing::HasSubstr("\nExec="));
}

TEST_F(LaunchAtLoginOnDisk, DisablingWhatIsNotThereIsLogged)
{
    EXPECT_EQ(
        sayAll([] { LaunchAtLogin::setEnabled(false); }),
        std::to_string(LOG_USER | LOG_ERR) +
            " [app.orlimo.Orlimo.LaunchAtLogin:main] Failed to disable launch at login: " +
            entry.string() + ": No such file or directory\n");
}

TEST_F(LaunchAtLoginOnDisk, AFolderThatCannotBeMadeIsLoggedAtEachAttempt)
{
    writeFile(configuration / "autostart", "a file");
    const std::string line =
        std::to_string(LOG_USER | LOG_ERR) +
        " [app.orlimo.Orlimo.LaunchAtLogin:main] Failed to enable launch at login: " +
        (configuration / "autostart").string() + ": File exists\n";
    EXPECT_EQ(
        sayAll([] {
            LaunchAtLogin::setEnabled(true);
            sayState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(true);
        }),
        "off\n" + line + line);
}

TEST_F(LaunchAtLoginOnDisk, NothingIsWrittenWhereErrorsAreMasked)
{
    EXPECT_EQ(
        sayAll([] {
            (void)::setlogmask(LOG_UPTO(LOG_CRIT));
            LaunchAtLogin::setEnabled(false);
        }),
        "");
}

} // namespace
} // namespace orlimo
