// What GNUstep's Foundation lacks, made of what it has.

#include <cerrno>

#import <Foundation/Foundation.h>
#include <fcntl.h>

@implementation NSFileManager (Declared)

- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask
{
    NSMutableArray<NSURL*>* const urls = [NSMutableArray array];
    for (NSString* path in NSSearchPathForDirectoriesInDomains(directory, domainMask, YES)) {
        [urls addObject:[NSURL fileURLWithPath:path isDirectory:YES]];
    }
    return urls;
}

@end

@implementation NSURL (Declared)

- (const char*)fileSystemRepresentation
{
    return [[self path] fileSystemRepresentation];
}

+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(NSURL*)baseURL
{
    NSString* const name =
        [[NSFileManager defaultManager] stringWithFileSystemRepresentation:path
                                                                    length:strlen(path)];
    return name == nil || baseURL != nil ? nil : [NSURL fileURLWithPath:name isDirectory:isDir];
}

@end

@implementation NSFileHandle (Declared)

- (BOOL)closeAndReturnError:(out NSError**)error
{
    const int failure = ::fcntl([self fileDescriptor], F_GETFD) < 0 ? errno : 0;
    [self closeFile];
    if (failure != 0 && error != nullptr) {
        *error = [NSError errorWithDomain:NSPOSIXErrorDomain code:failure userInfo:nil];
    }
    return failure == 0;
}

@end
