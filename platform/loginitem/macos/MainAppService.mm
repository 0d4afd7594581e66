#include "platform/loginitem/LoginItemService.h"
#include "platform/process/macos/StringConversion.h"
#include "platform/threads/MainThread.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

namespace orlimo {

namespace {

LoginItemStatus loginItemStatus(SMAppServiceStatus status)
{
    switch (status) {
    case SMAppServiceStatusEnabled:
        return LoginItemStatus::enabled;
    case SMAppServiceStatusRequiresApproval:
        return LoginItemStatus::requiresApproval;
    case SMAppServiceStatusNotFound:
        return LoginItemStatus::notFound;
    case SMAppServiceStatusNotRegistered:
        break;
    }
    // Also what a later system may add: only "enabled" may ever read as enabled.
    return LoginItemStatus::notRegistered;
}

ServiceError serviceError(NSError* error)
{
    // The system's numbers have 64 bits, those of its services are small.
    using Limits = std::numeric_limits<int>;
    const auto code = std::clamp<NSInteger>([error code], Limits::min(), Limits::max());
    return {
        .code = static_cast<int>(code),
        .localizedDescription = toUtf8([error localizedDescription])};
}

ServiceError serviceError(NSException* exception)
{
    return {
        .code = -1,
        .localizedDescription = toUtf8([exception name]) + ": " + toUtf8([exception reason])};
}

/// Whether the program runs from a copy that was made for a trial, see
/// packaging/macos/trial-bundle. What the system registers would outlive the copy.
bool isTrialCopy()
{
    NSNumber* const flag = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"OrlimoTrialCopy"];
    return [flag boolValue] != NO;
}

using Operation = BOOL (*)(NSError**);

/// Has the service do something. The system says why not by an error; what it throws all the same
/// must not pass through frames that know nothing of its exceptions.
std::optional<ServiceError> perform(Operation operation)
{
    requireMainThread();
    @autoreleasepool {
        @try
        {
            NSError* error = nil;
            if (operation(&error)) {
                return std::nullopt;
            }
            return serviceError(error);
        } @catch (NSException* exception)
        {
            return serviceError(exception);
        }
    }
}

/// The login item of the running program's own bundle. The system responds at once; what the user
/// has to approve afterwards is a matter of the status.
class MainAppService final : public LoginItemService
{
public:
    [[nodiscard]] LoginItemStatus status() const override
    {
        requireMainThread();
        @autoreleasepool {
            @try
            {
                return loginItemStatus([[SMAppService mainAppService] status]);
            } @catch (NSException*)
            {
                return LoginItemStatus::notRegistered;
            }
        }
    }

    [[nodiscard]] std::optional<ServiceError> registerItem() override
    {
        return perform([](NSError** error) {
            if (isTrialCopy()) {
                *error = [NSError errorWithDomain:NSPOSIXErrorDomain code:EPERM userInfo:nil];
                return NO;
            }
            return [[SMAppService mainAppService] registerAndReturnError:error];
        });
    }

    [[nodiscard]] std::optional<ServiceError> unregisterItem() override
    {
        return perform([](NSError** error) {
            return [[SMAppService mainAppService] unregisterAndReturnError:error];
        });
    }
};

} // namespace

LoginItemService& mainAppService()
{
    static MainAppService service;
    return service;
}

} // namespace orlimo
