#include "platform/loginitem/LoginItemService.h"
#include "tests/platform/macos/fakes/FakeObject.h"
#include "tests/support/FatalStopExpectation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

namespace orlimo {
namespace {

using testing::Contains;
using testing::Not;

constexpr const char* registration = "registerAndReturnError:";
constexpr const char* unregistration = "unregisterAndReturnError:";

/// The running program's service over a system's that does what the test says.
class MainAppServiceTest : public testing::Test
{
protected:
    ~MainAppServiceTest() override { FakeObject::resetAll(); }

    void fail(const std::string& operation, NSInteger code, NSString* description)
    {
        system.responds(operation, [code, description](NSInvocation* invocation) {
            *FakeObject::argument<NSError**>(invocation, 0) =
                [NSError errorWithDomain:@"SMAppServiceErrorDomain"
                                    code:code
                                userInfo:@{NSLocalizedDescriptionKey : description}];
        });
    }

    FakeObject& system = FakeObject::named("SMAppService");
    LoginItemService& service = mainAppService();
};

TEST_F(MainAppServiceTest, StatusIsThatOfSystem)
{
    NSInteger status = 0;
    for (const auto expected :
         {LoginItemStatus::notRegistered,
          LoginItemStatus::enabled,
          LoginItemStatus::requiresApproval,
          LoginItemStatus::notFound,
          LoginItemStatus::notRegistered}) // what a later system may add
    {
        system.returns("status", status);
        EXPECT_EQ(service.status(), expected) << status;
        ++status;
    }
}

TEST_F(MainAppServiceTest, ErrorIsThatOfSystem)
{
    @autoreleasepool {
        fail(registration, 1, @"Operation not permitted");
        fail(unregistration, -67'054, @"Jób nicht gefunden 🔑");
        EXPECT_EQ(service.registerItem()->code, 1);
        EXPECT_EQ(service.unregisterItem()->code, -67'054);
        EXPECT_EQ(service.unregisterItem()->localizedDescription, "Jób nicht gefunden 🔑");
    }
    system.returns<BOOL>(registration, YES);
    EXPECT_FALSE(service.registerItem().has_value());
}

TEST_F(MainAppServiceTest, ExceptionIsError)
{
    for (const char* const message : {"status", registration}) {
        system.responds(message, [](NSInvocation*) {
            [NSException raise:NSInternalInconsistencyException format:@"no bundle"];
        });
    }
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(service.registerItem()->code, -1);
    EXPECT_EQ(
        service.registerItem()->localizedDescription,
        "NSInternalInconsistencyException: no bundle");
}

TEST_F(MainAppServiceTest, TrialCopyIsNeverRegistered)
{
    FakeObject::named("NSBundle")
        .responds("objectForInfoDictionaryKey:", [](NSInvocation* invocation) {
            NSString* const key = FakeObject::argument<NSString*>(invocation, 0);
            id mark =
                [key isEqualToString:@"OrlimoTrialCopy"] ? [NSNumber numberWithBool:YES] : nil;
            [invocation setReturnValue:&mark];
        });
    EXPECT_EQ(service.registerItem()->code, EPERM);
    EXPECT_THAT(system.messages, Not(Contains(registration)));
}

TEST_F(MainAppServiceTest, CallOffMainThreadIsFatal)
{
    expectFatalStop(
        [this] { std::thread([this] { (void)service.status(); }).join(); },
        {},
        {.file = "platform/loginitem/macos/MainAppService.mm",
         .reason = "called off the main thread"});
}

} // namespace
} // namespace orlimo
