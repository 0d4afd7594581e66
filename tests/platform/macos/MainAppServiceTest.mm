#include "login/LaunchAtLogin.h"
#include "login/LaunchAtLoginObservable.h"
#include "platform/LoginItemService.h"
#include "tests/platform/macos/standins/AppServiceScript.h"
#include "tests/platform/macos/standins/AppleEvents.h"
#include "tests/platform/macos/standins/RecordedUnifiedLog.h"
#include "tests/support/FatalStopExpectation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#import <Foundation/Foundation.h>
#import <os/log.h>

/// An error with a number of as many bits as the system's numbers have.
@interface OrlimoWideError : NSError {
@public
    NSInteger wideCode;
}
@end

@implementation OrlimoWideError

- (NSInteger)code
{
    return wideCode;
}

@end

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* loginSubsystem = "app.orlimo.Orlimo.LaunchAtLogin";
constexpr const char* failureFormat = "Failed to %s launch at login: %s";

NSError* systemError(NSInteger code, NSString* description)
{
    return [NSError errorWithDomain:@"SMAppServiceErrorDomain"
                               code:code
                           userInfo:[NSDictionary dictionaryWithObject:description
                                                                forKey:NSLocalizedDescriptionKey]];
}

[[noreturn]] void throwException()
{
    [NSException raise:NSInternalInconsistencyException format:@"no bundle"];
    std::abort();
}

/// The running program's service over a system's that does what the test says.
class MainAppService : public testing::Test
{
protected:
    ~MainAppService() override { appServiceScript() = {}; }

    AppServiceScript& script = appServiceScript();
    LoginItemService& service = mainAppService();
    std::vector<std::string> calls;
};

TEST_F(MainAppService, HasTheStatusThatTheSystemSays)
{
    const std::vector<LoginItemStatus> expected{
        LoginItemStatus::notRegistered,
        LoginItemStatus::enabled,
        LoginItemStatus::requiresApproval,
        LoginItemStatus::notFound};
    for (int status = 0; status < 4; ++status) {
        script.status = [status] { return static_cast<SMAppServiceStatus>(status); };
        EXPECT_EQ(service.status(), expected.at(static_cast<std::size_t>(status))) << status;
    }
}

TEST_F(MainAppService, AStatusThatNobodyKnowsIsNotRegistered)
{
    for (const NSInteger status : {NSInteger{4}, NSInteger{-1}, NSInteger{1} << 32}) {
        script.status = [status] { return static_cast<SMAppServiceStatus>(status); };
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered) << status;
    }
}

TEST_F(MainAppService, AsksTheSystemAtEachCall)
{
    script = {
        .status =
            [this] {
                calls.emplace_back("status");
                return SMAppServiceStatusEnabled;
            },
        .registerItem = [this]() -> NSError* {
            calls.emplace_back("register");
            return nil;
        },
        .unregisterItem = [this]() -> NSError* {
            calls.emplace_back("unregister");
            return nil;
        }};
    (void)service.status();
    (void)service.status();
    EXPECT_FALSE(service.registerItem().has_value());
    EXPECT_FALSE(service.unregisterItem().has_value());
    EXPECT_THAT(calls, ElementsAre("status", "status", "register", "unregister"));
}

TEST_F(MainAppService, PassesTheSystemsErrorOn)
{
    script.registerItem = [] { return systemError(1, @"Operation not permitted"); };
    script.unregisterItem = [] { return systemError(-67'054, @"Jób nicht gefunden 🔑"); };
    const auto registering = service.registerItem();
    ASSERT_TRUE(registering.has_value());
    EXPECT_EQ(registering->code, 1);
    EXPECT_EQ(registering->localizedDescription, "Operation not permitted");
    const auto unregistering = service.unregisterItem();
    ASSERT_TRUE(unregistering.has_value());
    EXPECT_EQ(unregistering->code, -67'054);
    EXPECT_EQ(unregistering->localizedDescription, "Jób nicht gefunden 🔑");
}

TEST_F(MainAppService, AnErrorsNumberStaysInRange)
{
    const auto wideError = [](NSInteger code) -> NSError* {
        OrlimoWideError* const error = [[OrlimoWideError alloc] initWithDomain:NSCocoaErrorDomain
                                                                          code:0
                                                                      userInfo:nil];
        error->wideCode = code;
        return [error autorelease];
    };
    script.registerItem = [&] { return wideError(NSIntegerMax); };
    script.unregisterItem = [&] { return wideError(NSIntegerMin); };
    EXPECT_EQ(service.registerItem()->code, std::numeric_limits<int>::max());
    EXPECT_EQ(service.unregisterItem()->code, std::numeric_limits<int>::min());
}

TEST_F(MainAppService, AnExceptionIsAnError)
{
    script = {
        .status = []() -> SMAppServiceStatus { throwException(); },
        .registerItem = []() -> NSError* { throwException(); },
        .unregisterItem = []() -> NSError* { throwException(); }};
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    const auto registering = service.registerItem();
    ASSERT_TRUE(registering.has_value());
    EXPECT_EQ(registering->code, -1);
    EXPECT_EQ(registering->localizedDescription, "NSInternalInconsistencyException: no bundle");
    EXPECT_EQ(
        service.unregisterItem()->localizedDescription,
        "NSInternalInconsistencyException: no bundle");
}

TEST_F(MainAppService, NeverAnswersLater)
{
    service.setAnswerHandler([this](bool, const auto&) { calls.emplace_back("answer"); });
    EXPECT_FALSE(service.registerItem().has_value());
    script.unregisterItem = [] { return systemError(1, @"no"); };
    EXPECT_TRUE(service.unregisterItem().has_value());
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(MainAppService, IsTheMainThreadsOwn)
{
    expectFatalStop(
        [&] { std::thread([this] { (void)service.status(); }).join(); },
        {},
        {.file = "platform/macos/MainAppService.mm", .reason = "called off the main thread"});
    expectFatalStop(
        [&] { std::thread([this] { (void)service.registerItem(); }).join(); },
        {},
        {.file = "platform/macos/MainAppService.mm", .reason = "called off the main thread"});
}

/// Launch at login as the program has it: its own service, log and launch event.
class LaunchAtLoginOnTheSystem : public MainAppService
{
protected:
    LaunchAtLoginOnTheSystem()
    {
        script = {
            .status = [this] { return status; },
            .registerItem = [this]() -> NSError* {
                if (refusal == nil) {
                    status =
                        isApproved ? SMAppServiceStatusEnabled : SMAppServiceStatusRequiresApproval;
                }
                return refusal;
            },
            .unregisterItem = [this]() -> NSError* {
                if (status == SMAppServiceStatusNotRegistered) {
                    return systemError(1, @"not registered");
                }
                status = SMAppServiceStatusNotRegistered;
                return nil;
            }};
    }

    SMAppServiceStatus status = SMAppServiceStatusNotRegistered;
    bool isApproved = true;
    NSError* refusal = nil;
    RecordedUnifiedLog log;
};

TEST_F(LaunchAtLoginOnTheSystem, ComesAndGoes)
{
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    LaunchAtLogin::setEnabled(true);
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
    LaunchAtLogin::observable().setEnabled(true);
    EXPECT_TRUE(LaunchAtLogin::observable().isEnabled());
    LaunchAtLogin::setEnabled(false);
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    EXPECT_THAT(RecordedUnifiedLog::entries(), IsEmpty());
}

TEST_F(LaunchAtLoginOnTheSystem, StaysOffUntilTheUserApproves)
{
    isApproved = false;
    LaunchAtLogin::setEnabled(true);
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    EXPECT_THAT(RecordedUnifiedLog::entries(), IsEmpty());
    status = SMAppServiceStatusEnabled;
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
}

TEST_F(LaunchAtLoginOnTheSystem, AFailureIsOneEntryAtErrorLevel)
{
    @autoreleasepool {
        refusal = systemError(1, @"Operation not permitted");
        status = SMAppServiceStatusEnabled;
        LaunchAtLogin::setEnabled(true);
        EXPECT_FALSE(LaunchAtLogin::isEnabled()) << "it was unregistered first";
        LaunchAtLogin::setEnabled(false);
    }
    EXPECT_THAT(
        RecordedUnifiedLog::entries(),
        ElementsAre(
            RecordedUnifiedLog::Entry{
                loginSubsystem,
                "main",
                OS_LOG_TYPE_ERROR,
                failureFormat,
                {"enable", "Operation not permitted"}},
            RecordedUnifiedLog::Entry{
                loginSubsystem,
                "main",
                OS_LOG_TYPE_ERROR,
                failureFormat,
                {"disable", "not registered"}}));
}

TEST_F(LaunchAtLoginOnTheSystem, NothingIsWrittenWhereErrorsAreSwitchedOff)
{
    RecordedUnifiedLog::disableErrors();
    LaunchAtLogin::setEnabled(false);
    EXPECT_THAT(RecordedUnifiedLog::entries(), IsEmpty());
}

TEST_F(LaunchAtLoginOnTheSystem, WasTheLaunchWhereItsEventSaysSo)
{
    EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
    @autoreleasepool {
        NSAppleEventDescriptor* const event = appleEvent(kCoreEventClass, kAEOpenApplication);
        const CurrentAppleEvent handling(event);
        EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
        [event setParamDescriptor:[NSAppleEventDescriptor
                                      descriptorWithEnumCode:keyAELaunchedAsServiceItem]
                       forKeyword:keyAEPropData];
        EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
        [event setParamDescriptor:[NSAppleEventDescriptor
                                      descriptorWithEnumCode:keyAELaunchedAsLogInItem]
                       forKeyword:keyAEPropData];
        EXPECT_TRUE(LaunchAtLogin::wasLaunchedAtLogin());
    }
    EXPECT_FALSE(LaunchAtLogin::wasLaunchedAtLogin());
}

} // namespace
} // namespace orlimo
