// What GNUstep's Foundation lacks, made of what it has.

#import <Foundation/Foundation.h>

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
