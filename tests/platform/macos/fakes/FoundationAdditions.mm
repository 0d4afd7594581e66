// What GNUstep's Foundation lacks or gets elsewhere.

#include <cstdlib>

#import <Foundation/Foundation.h>

// GNUstep takes the home folder from the user database only and would keep its files in the real
// one; this function replaces its own and follows the tests' HOME.
NSString* NSHomeDirectoryForUser(NSString* /*name*/)
{
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): set before main
    return home == nullptr || *home == '\0' ? nil : [NSString stringWithUTF8String:home];
}

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

@end
