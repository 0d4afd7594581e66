#include "platform/loginitem/macos/ErrorConversion.h"

#include <cerrno>

#import <Foundation/Foundation.h>

namespace orlimo {

namespace {

/// The kernel's number nearest to an error of the system's frameworks that stands upon none.
int approximateErrno(NSError* error)
{
    if (![[error domain] isEqualToString:NSCocoaErrorDomain]) {
        return EIO;
    }
    switch ([error code]) {
    case NSFileNoSuchFileError:
    case NSFileReadNoSuchFileError:
        return ENOENT;
    case NSFileReadNoPermissionError:
        return EACCES;
    case NSFileReadInvalidFileNameError:
        return EINVAL;
    case NSFileReadTooLargeError:
        return EFBIG;
    default:
        return EIO;
    }
}

int errnoFor(NSError* error)
{
    for (NSError* cause = error; cause != nil;
         cause = [[cause userInfo] objectForKey:NSUnderlyingErrorKey])
    {
        if ([[cause domain] isEqualToString:NSPOSIXErrorDomain]) {
            return static_cast<int>([cause code]);
        }
    }
    return approximateErrno(error);
}

} // namespace

std::error_code toErrorCode(NSError* error)
{
    return {errnoFor(error), std::generic_category()};
}

} // namespace orlimo
