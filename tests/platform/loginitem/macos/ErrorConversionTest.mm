#include "platform/loginitem/macos/ErrorConversion.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>
#include <utility>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

TEST(ErrorConversion, SystemNumberIsFoundAtAnyDepthAndElseNearestOneIsTaken)
{
    @autoreleasepool {
        const auto errorWith =
            [](NSString* domain, NSInteger code, NSError* underlying = nil) -> NSError* {
            return [NSError
                errorWithDomain:domain
                           code:code
                       userInfo:underlying == nil ? @{} : @{NSUnderlyingErrorKey : underlying}];
        };
        NSError* const systems = errorWith(NSPOSIXErrorDomain, ELOOP);
        // The number says more than the error above it.
        NSError* const files = errorWith(NSCocoaErrorDomain, NSFileReadNoPermissionError, systems);
        for (const auto& [error, number] :
             {std::pair{systems, ELOOP},
              std::pair{files, ELOOP},
              std::pair{errorWith(@"another", 1, files), ELOOP},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileNoSuchFileError), ENOENT},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileReadNoSuchFileError), ENOENT},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileReadNoPermissionError), EACCES},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileReadInvalidFileNameError), EINVAL},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileReadTooLargeError), EFBIG},
              std::pair{errorWith(NSCocoaErrorDomain, NSFileReadUnknownError), EIO},
              std::pair{errorWith(@"another", NSFileReadNoSuchFileError), EIO},
              std::pair{static_cast<NSError*>(nil), EIO}})
        {
            EXPECT_EQ(toErrorCode(error), std::error_code(number, std::generic_category()));
        }
    }
}

} // namespace
} // namespace orlimo
