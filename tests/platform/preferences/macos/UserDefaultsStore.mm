#include "tests/platform/preferences/UserDefaultsStore.h"

#include "platform/process/macos/StringConversion.h"

#include <cstdlib>

#import <Foundation/Foundation.h>

namespace orlimo {

void clearUserDefaults()
{
    @autoreleasepool {
        static NSUserDefaults* const defaults = [NSUserDefaults standardUserDefaults];
        // As the system names a program's own domain.
        NSString* const bundle = [[NSBundle mainBundle] bundleIdentifier];
        NSString* const domain = bundle != nil ? bundle : [[NSProcessInfo processInfo] processName];
        if (toUtf8(domain) != ORLIMO_CLEARED_DOMAIN) {
            NSLog(@"The preferences of %@ are not to be cleared", domain);
            std::abort();
        }
        [defaults removePersistentDomainForName:domain];
        [defaults synchronize];
    }
}

} // namespace orlimo
