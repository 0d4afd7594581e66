// Apple events within one process: descriptors that keep what they are given, and a manager that
// calls the handlers when a test delivers an event.
#include "tests/platform/macos/standins/AppleEvents.h"

#include <map>
#include <utility>

/// A descriptor of any kind: the base class has no place for what it holds.
@interface OrlimoAppleEventDescriptor : NSAppleEventDescriptor {
@public
    AEEventClass heldClass;
    AEEventID heldId;
    OSType heldCode;
    NSMutableDictionary* parameters;
}
@end

@implementation OrlimoAppleEventDescriptor

- (instancetype)init
{
    self = [super init];
    if (self != nil) {
        parameters = [[NSMutableDictionary alloc] init];
    }
    return self;
}

- (void)dealloc
{
    [parameters release];
    [super dealloc];
}

- (AEEventClass)eventClass
{
    return heldClass;
}

- (AEEventID)eventID
{
    return heldId;
}

- (OSType)enumCodeValue
{
    return heldCode;
}

- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword
{
    [parameters setObject:descriptor forKey:[NSNumber numberWithUnsignedInt:keyword]];
}

- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword
{
    return [parameters objectForKey:[NSNumber numberWithUnsignedInt:keyword]];
}

@end

@implementation NSAppleEventDescriptor (Declared)

+ (NSAppleEventDescriptor*)descriptorWithEnumCode:(OSType)enumerator
{
    OrlimoAppleEventDescriptor* const descriptor = [[OrlimoAppleEventDescriptor alloc] init];
    descriptor->heldCode = enumerator;
    return [descriptor autorelease];
}

+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string
{
    static_cast<void>(string);
    return [[[OrlimoAppleEventDescriptor alloc] init] autorelease];
}

+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)targetDescriptor
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID
{
    static_cast<void>(targetDescriptor);
    static_cast<void>(returnID);
    static_cast<void>(transactionID);
    OrlimoAppleEventDescriptor* const event = [[OrlimoAppleEventDescriptor alloc] init];
    event->heldClass = eventClass;
    event->heldId = eventID;
    return [event autorelease];
}

- (AEEventClass)eventClass
{
    return 0;
}

- (AEEventID)eventID
{
    return 0;
}

- (OSType)enumCodeValue
{
    return 0;
}

- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword
{
    static_cast<void>(descriptor);
    static_cast<void>(keyword);
}

- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword
{
    static_cast<void>(keyword);
    return nil;
}

@end

namespace orlimo {
namespace {

struct EventHandler
{
    id object;
    SEL selector;
};

using EventKind = std::pair<AEEventClass, AEEventID>;

std::map<EventKind, EventHandler>& eventHandlers()
{
    static std::map<EventKind, EventHandler> handlers;
    return handlers;
}

NSAppleEventDescriptor*& eventBeingHandled()
{
    static NSAppleEventDescriptor* event = nil;
    return event;
}

} // namespace

CurrentAppleEvent::CurrentAppleEvent(NSAppleEventDescriptor* event)
{
    eventBeingHandled() = [event retain];
}

CurrentAppleEvent::~CurrentAppleEvent()
{
    [std::exchange(eventBeingHandled(), nil) release];
}

NSAppleEventDescriptor* appleEvent(AEEventClass eventClass, AEEventID eventId)
{
    return [NSAppleEventDescriptor appleEventWithEventClass:eventClass
                                                    eventID:eventId
                                           targetDescriptor:nil
                                                   returnID:kAutoGenerateReturnID
                                              transactionID:kAnyTransactionID];
}

bool deliverAppleEvent(AEEventClass eventClass, AEEventID eventId)
{
    @autoreleasepool {
        const auto handler = eventHandlers().find({eventClass, eventId});
        if (handler == eventHandlers().end()) {
            return false;
        }
        NSAppleEventDescriptor* const event = appleEvent(eventClass, eventId);
        const CurrentAppleEvent handling(event);
        [handler->second.object performSelector:handler->second.selector
                                     withObject:event
                                     withObject:appleEvent(kCoreEventClass, 'ansr')];
        return true;
    }
}

} // namespace orlimo

@implementation NSAppleEventManager (Declared)

+ (NSAppleEventManager*)sharedAppleEventManager
{
    static NSAppleEventManager* const manager = [[NSAppleEventManager alloc] init];
    return manager;
}

- (NSAppleEventDescriptor*)currentAppleEvent
{
    return orlimo::eventBeingHandled();
}

- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID
{
    orlimo::eventHandlers()[{eventClass, eventID}] = {handler, handleEventSelector};
}

- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID
{
    orlimo::eventHandlers().erase({eventClass, eventID});
}

@end
