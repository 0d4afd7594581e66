#include "tests/platform/macos/standins/AppServiceScript.h"

namespace orlimo {

AppServiceScript& appServiceScript()
{
    static AppServiceScript script;
    return script;
}

namespace {

BOOL answer(const std::function<NSError*()>& operation, NSError** error)
{
    NSError* const failure = operation ? operation() : nil;
    if (failure != nil && error != nullptr) {
        *error = failure;
    }
    return failure == nil ? YES : NO;
}

} // namespace
} // namespace orlimo

@implementation SMAppService

+ (SMAppService*)mainAppService
{
    static SMAppService* const service = [[SMAppService alloc] init];
    return service;
}

- (SMAppServiceStatus)status
{
    const auto& status = orlimo::appServiceScript().status;
    return status ? status() : SMAppServiceStatusNotRegistered;
}

- (BOOL)registerAndReturnError:(NSError**)error
{
    return orlimo::answer(orlimo::appServiceScript().registerItem, error);
}

- (BOOL)unregisterAndReturnError:(NSError**)error
{
    return orlimo::answer(orlimo::appServiceScript().unregisterItem, error);
}

@end
