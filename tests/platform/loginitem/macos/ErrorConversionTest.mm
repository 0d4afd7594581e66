#include "platform/loginitem/macos/ErrorConversion.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

NSError* errorWith(NSString* domain, NSInteger code, NSError* underlying = nil)
{
    NSDictionary* const information =
        underlying == nil ? @{} : @{NSUnderlyingErrorKey : underlying};
    return [NSError errorWithDomain:domain code:code userInfo:information];
}

std::error_code systemError(int number)
{
    return {number, std::generic_category()};
}

TEST(ErrorConversion, FindsTheSystemsNumberUnderTheErrorsOfTheFrameworks)
{
    @autoreleasepool {
        NSError* const kernels = errorWith(NSPOSIXErrorDomain, ELOOP);
        // The number says more than the error above it.
        NSError* const files = errorWith(NSCocoaErrorDomain, NSFileReadNoPermissionError, kernels);
        for (NSError* error : @[ kernels, files, errorWith(@"another", 1, files) ]) {
            EXPECT_EQ(toErrorCode(error), systemError(ELOOP));
        }
    }
}

TEST(ErrorConversion, TakesTheNearestNumberForWhatStandsAlone)
{
    @autoreleasepool {
        for (const auto& [code, number] :
             {std::pair{NSInteger{NSFileNoSuchFileError}, ENOENT},
              std::pair{NSInteger{NSFileReadNoSuchFileError}, ENOENT},
              std::pair{NSInteger{NSFileReadNoPermissionError}, EACCES},
              std::pair{NSInteger{NSFileReadInvalidFileNameError}, EINVAL},
              std::pair{NSInteger{NSFileReadTooLargeError}, EFBIG},
              std::pair{NSInteger{NSFileReadUnknownError}, EIO}})
        {
            EXPECT_EQ(toErrorCode(errorWith(NSCocoaErrorDomain, code)), systemError(number));
        }
        EXPECT_EQ(toErrorCode(errorWith(@"another", NSFileReadNoSuchFileError)), systemError(EIO));
        EXPECT_EQ(toErrorCode(nil), systemError(EIO));
    }
}

} // namespace
} // namespace orlimo
