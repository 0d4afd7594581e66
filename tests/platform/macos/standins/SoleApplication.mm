// The programs that run in the session, for a program that is never started twice: there is no
// other, and nobody is asked to open anything.

#import <AppKit/AppKit.h>

@implementation NSRunningApplication

+ (NSRunningApplication*)runningApplicationWithProcessIdentifier:(pid_t)pid
{
    return nil;
}

@end

@implementation NSWorkspaceOpenConfiguration

+ (instancetype)configuration
{
    return [[[self alloc] init] autorelease];
}

@end
