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
@end

#include "declared/NSAppleEventManager.h"
