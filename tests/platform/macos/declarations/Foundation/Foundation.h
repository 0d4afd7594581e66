// Foundation as the system has it: what GNUstep's lacks is added to it.
#pragma once

#include <CoreServices/CoreServices.h>
#include_next <Foundation/Foundation.h>

@interface NSFileManager (Declared)
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
@end

@interface NSURL (Declared)
/// Lasts as long as the receiver.
- (const char*)fileSystemRepresentation;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(NSURL*)baseURL;
@end

@interface NSFileHandle (Declared)
- (BOOL)closeAndReturnError:(out NSError**)error;
@end

// Of Apple events GNUstep has the names of the classes.

@interface NSAppleEventDescriptor (Declared)
@property(readonly) AEEventID eventID;
/// 0 where it is no enumerated value and cannot be made one.
@property(readonly) OSType enumCodeValue;
/// nil where the event has none.
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
@end

@interface NSAppleEventManager (Declared)
+ (NSAppleEventManager*)sharedAppleEventManager;
/// The event whose handler runs on this thread.
@property(readonly, retain) NSAppleEventDescriptor* currentAppleEvent;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end
