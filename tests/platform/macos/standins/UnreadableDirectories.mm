// A folder that may not be read cannot be listed. GNUstep lists it as an empty one.

#include "tests/platform/macos/standins/MethodReplacement.h"

#include <cerrno>
#include <filesystem>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

using Lister = NSArray<NSString*>* (*)(id, SEL, NSString*, NSError**);

Lister list = nullptr;

NSArray<NSString*>* listIfReadable(id manager, SEL selector, NSString* path, NSError** error)
{
    std::error_code failure;
    const std::filesystem::directory_iterator first([path fileSystemRepresentation], failure);
    if (!failure) {
        return list(manager, selector, path, error);
    }
    if (error != nullptr) {
        *error = [NSError errorWithDomain:NSPOSIXErrorDomain code:failure.value() userInfo:nil];
    }
    return nil;
}

} // namespace
} // namespace orlimo

@interface NSFileManager (Unreadable)
@end

@implementation NSFileManager (Unreadable)

+ (void)load
{
    orlimo::list = orlimo::replaceMethod(
        class_getInstanceMethod(self, @selector(contentsOfDirectoryAtPath:error:)),
        orlimo::listIfReadable);
}

@end
