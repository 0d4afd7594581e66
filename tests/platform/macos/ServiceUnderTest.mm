#include "tests/login/ServiceUnderTest.h"

#include "platform/macos/StringConversion.h"
#include "tests/platform/macos/standins/AppServiceScript.h"

#import <Foundation/Foundation.h>

namespace orlimo {

namespace {

NSError* systemError(const std::optional<ServiceError>& error)
{
    if (!error) {
        return nil;
    }
    NSString* const description = toNSString(error->localizedDescription);
    return [NSError errorWithDomain:@"SMAppServiceErrorDomain"
                               code:error->code
                           userInfo:[NSDictionary dictionaryWithObject:description
                                                                forKey:NSLocalizedDescriptionKey]];
}

} // namespace

LoginItemService& serviceUnderTest(ScriptedLoginItemService& script)
{
    appServiceScript() = {
        .status = [&script] { return static_cast<SMAppServiceStatus>(script.status()); },
        .registerItem = [&script] { return systemError(script.registerItem()); },
        .unregisterItem = [&script] { return systemError(script.unregisterItem()); }};
    return mainAppService();
}

} // namespace orlimo
