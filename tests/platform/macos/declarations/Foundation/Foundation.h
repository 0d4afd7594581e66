// Foundation as the system has it: what GNUstep's lacks is added to it. macOS 10.0 unless it says
// more.
#pragma once

#include <CoreServices/CoreServices.h>
#include_next <Foundation/Foundation.h>

@interface NSFileManager (Declared)
/// macOS 10.6
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
@end

@interface NSURL (Declared)
/// macOS 10.9: a C string for the file system, which lasts as long as the receiver.
- (const char*)fileSystemRepresentation;
/// macOS 10.9
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(NSURL*)baseURL;
@end

@interface NSFileHandle (Declared)
/// macOS 10.15
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
/// Calls -(void)handle:(NSAppleEventDescriptor*)event
/// withReplyEvent:(NSAppleEventDescriptor*)reply.
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end
