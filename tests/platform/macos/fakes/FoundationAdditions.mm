// What GNUstep's Foundation lacks, or asks others for.

#include <cstdlib>

#import <Foundation/Foundation.h>

// GNUstep asks the user database alone where the home is, and would keep its own files in the home
// of whoever runs the tests; this function, put before its own, leads it to where the tests have
// led everything else.
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
