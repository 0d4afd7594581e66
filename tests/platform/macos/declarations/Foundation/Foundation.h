// Foundation as the system has it: what GNUstep's lacks is added to it.
#pragma once

#include_next <Foundation/Foundation.h>

/// Foundation
@interface NSFileManager (Declared)
/// macOS 10.6
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
@end

/// Foundation
@interface NSURL (Declared)
/// macOS 10.9: a C string for the file system, which lasts as long as the receiver.
- (const char*)fileSystemRepresentation;
/// macOS 10.9
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(NSURL*)baseURL;
@end

/// Foundation
@interface NSFileHandle (Declared)
/// macOS 10.15
- (BOOL)closeAndReturnError:(out NSError**)error;
@end

#include "declared/NSAppleEventManager.h"
