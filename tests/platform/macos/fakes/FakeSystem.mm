// Class methods that return the system's objects, replacing GNUstep's or adding missing ones: each
// returns the fake named after the class.

#include "tests/platform/macos/fakes/FakeObject.h"

#include <cstdarg>
#include <string>
#include <string_view>

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#import <os/log.h>

@interface NSObject (FakeSystem)
- (id)applicationInProcess:(pid_t)process;
- (BOOL)isEnabledForType:(os_log_type_t)type;
@end

namespace {

id fakeNamed(const char* name)
{
    return orlimo::FakeObject::named(name).object();
}

} // namespace

#define ORLIMO_RETURN_FAKE(type, method)                                                           \
    @implementation type (Fake)                                                                    \
    +(id)method                                                                                    \
    {                                                                                              \
        return fakeNamed(#type);                                                                   \
    }                                                                                              \
    @end

ORLIMO_RETURN_FAKE(NSAppleEventManager, sharedAppleEventManager)
ORLIMO_RETURN_FAKE(NSStatusBar, systemStatusBar)
ORLIMO_RETURN_FAKE(NSWorkspace, sharedWorkspace)

@implementation NSWorkspaceOpenConfiguration
@end
ORLIMO_RETURN_FAKE(NSWorkspaceOpenConfiguration, configuration)

@implementation SMAppService
@end
ORLIMO_RETURN_FAKE(SMAppService, mainAppService)

// Class methods forwarded to the fake of the class.

@implementation NSScreen (Fake)
+ (NSArray*)screens
{
    return [fakeNamed("NSScreen") screens];
}
+ (NSScreen*)mainScreen
{
    return [fakeNamed("NSScreen") mainScreen];
}
@end

@implementation NSRunningApplication (Fake)
+ (id)runningApplicationWithProcessIdentifier:(pid_t)process
{
    return [fakeNamed("NSRunningApplication") applicationInProcess:process];
}
@end

// Instance methods of GNUstep's own objects, forwarded likewise.

@implementation NSBundle (Fake)
- (NSString*)bundleIdentifier
{
    return self == [NSBundle mainBundle] ? [fakeNamed("NSBundle") bundleIdentifier] : nil;
}
- (id)objectForInfoDictionaryKey:(NSString*)key
{
    return [fakeNamed("NSBundle") objectForInfoDictionaryKey:key];
}
@end

@implementation NSImage (Fake)
- (void)setTemplate:(BOOL)isTemplate
{
    [fakeNamed("NSImage") setTemplate:isTemplate];
}
@end

// The unified log: each entry is a message "subsystem category: format | argument | argument".

os_log_t os_log_create(const char* subsystem, const char* category)
{
    return [fakeNamed((std::string(subsystem) + " " + category).c_str()) retain];
}

bool os_log_type_enabled(os_log_t /*log*/, os_log_type_t type)
{
    return [fakeNamed("os_log") isEnabledForType:type];
}

void orlimo_record_os_log(os_log_t log, const char* format, ...)
{
    std::string entry = static_cast<OrlimoFakeObject*>(log)->fake->name + ": " + format;
    va_list arguments;
    va_start(arguments, format);
    // The formats contain only "%s".
    for (const char sign : std::string_view(format)) {
        if (sign == '%') {
            entry.append(" | ").append(va_arg(arguments, const char*));
        }
    }
    va_end(arguments);
    orlimo::FakeObject::named("os_log").messages.push_back(entry);
}
