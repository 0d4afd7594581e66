#include "platform/macos/ErrorConversion.h"

#include <gtest/gtest.h>

#include <cerrno>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

NSError* errorWith(NSString* domain, NSInteger code, NSError* underlying = nil)
{
    NSDictionary* const information =
        underlying == nil ? @{} : @{NSUnderlyingErrorKey : underlying};
    return [NSError errorWithDomain:domain code:code userInfo:information];
}

int numberFor(NSError* error)
{
    const std::error_code code = toErrorCode(error);
    EXPECT_EQ(code.category(), std::generic_category());
    return code.value();
}

TEST(ErrorConversion, TakesTheKernelsOwnNumber)
{
    @autoreleasepool {
        EXPECT_EQ(numberFor(errorWith(NSPOSIXErrorDomain, EACCES)), EACCES);
        EXPECT_EQ(numberFor(errorWith(NSPOSIXErrorDomain, EMFILE)), EMFILE);
    }
}

TEST(ErrorConversion, FindsItUnderTheErrorsOfTheFrameworks)
{
    @autoreleasepool {
        NSError* const kernels = errorWith(NSPOSIXErrorDomain, ELOOP);
        NSError* const files = errorWith(NSCocoaErrorDomain, NSFileReadUnknownError, kernels);
        EXPECT_EQ(numberFor(files), ELOOP);
        EXPECT_EQ(numberFor(errorWith(@"another", 1, files)), ELOOP);
        // It says more than the error above it.
        EXPECT_EQ(
            numberFor(errorWith(
                NSCocoaErrorDomain,
                NSFileReadNoPermissionError,
                errorWith(NSPOSIXErrorDomain, EPERM))),
            EPERM);
    }
}

TEST(ErrorConversion, TakesTheNearestNumberForWhatStandsAlone)
{
    @autoreleasepool {
        const auto number = [](NSInteger code) {
            return numberFor(errorWith(NSCocoaErrorDomain, code));
        };
        EXPECT_EQ(number(NSFileNoSuchFileError), ENOENT);
        EXPECT_EQ(number(NSFileReadNoSuchFileError), ENOENT);
        EXPECT_EQ(number(NSFileReadNoPermissionError), EACCES);
        EXPECT_EQ(number(NSFileReadInvalidFileNameError), EINVAL);
        EXPECT_EQ(number(NSFileReadTooLargeError), EFBIG);
        EXPECT_EQ(number(NSFileReadUnknownError), EIO);
    }
}

TEST(ErrorConversion, IsAnErrorAlsoWhereNothingIsKnown)
{
    @autoreleasepool {
        EXPECT_EQ(numberFor(nil), EIO);
        EXPECT_EQ(numberFor(errorWith(@"another", NSFileReadNoSuchFileError)), EIO);
        EXPECT_EQ(numberFor(errorWith(NSOSStatusErrorDomain, -43)), EIO);
    }
}

} // namespace
} // namespace orlimo
