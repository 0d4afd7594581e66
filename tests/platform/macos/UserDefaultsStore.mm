#include "tests/platform/UserDefaultsStore.h"

#include "platform/ApplicationIdentity.h"
#include "platform/macos/StringConversion.h"

#import <Foundation/Foundation.h>

namespace orlimo {

void clearUserDefaults()
{
    @autoreleasepool {
        NSUserDefaults* const defaults = [NSUserDefaults standardUserDefaults];
        [defaults removePersistentDomainForName:toNSString(identity::applicationIdentifier)];
        [defaults synchronize];
    }
}

} // namespace orlimo
