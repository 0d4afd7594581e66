// Apple events, of which GNUstep has the names of the classes.
#pragma once

#include <CoreServices/CoreServices.h>
#import <Foundation/NSAppleEventDescriptor.h>
#import <Foundation/NSAppleEventManager.h>

/// Foundation
@interface NSAppleEventDescriptor (Declared)
/// macOS 10.0
+ (NSAppleEventDescriptor*)descriptorWithEnumCode:(OSType)enumerator;
/// macOS 10.0
+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string;
/// macOS 10.0
+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)targetDescriptor
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID;
/// macOS 10.0
@property(readonly) AEEventClass eventClass;
/// macOS 10.0
@property(readonly) AEEventID eventID;
/// macOS 10.0: 0 where it is no enumerated value and cannot be made one.
@property(readonly) OSType enumCodeValue;
/// macOS 10.0
- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword;
/// macOS 10.0: nil where the event has none.
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
@end

/// Foundation
@interface NSAppleEventManager (Declared)
/// macOS 10.0
+ (NSAppleEventManager*)sharedAppleEventManager;
/// macOS 10.0: the event whose handler runs on this thread.
@property(readonly, retain) NSAppleEventDescriptor* currentAppleEvent;
/// macOS 10.0: calls -(void)handle:(NSAppleEventDescriptor*)event
/// withReplyEvent:(NSAppleEventDescriptor*)reply.
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
/// macOS 10.0
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end
