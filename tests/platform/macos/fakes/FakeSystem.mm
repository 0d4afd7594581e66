// What of the system is a fake or missing in GNUstep. Class methods that return the system's
// objects return the fake named after the class.

#include "tests/platform/macos/fakes/FakeObject.h"

#include <cstdarg>
#include <cstdlib>
#include <string>
#include <string_view>

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#import <os/log.h>

namespace orlimo {

static std::map<std::string, FakeObject>& fakes()
{
    static auto& all = *new std::map<std::string, FakeObject>;
    return all;
}

FakeObject& FakeObject::named(const std::string& name)
{
    FakeObject& fake = fakes()[name];
    if (fake.receiver == nil) {
        auto* const made = [[OrlimoFakeObject alloc] init];
        made->fake = &fake;
        fake.receiver = made;
        fake.name = name;
    }
    return fake;
}

void FakeObject::resetAll()
{
    for (auto& [name, fake] : fakes()) {
        fake.messages.clear();
        fake.responses.clear();
    }
}

void FakeObject::receive(NSInvocation* invocation)
{
    const std::string selector = [NSStringFromSelector([invocation selector]) UTF8String];
    messages.push_back(selector);
    std::vector<char> nothing([[invocation methodSignature] methodReturnLength] + 1);
    [invocation setReturnValue:nothing.data()];
    if (const auto found = responses.find(selector); found != responses.end()) {
        const Response response = found->second;
        response(invocation);
    }
}

} // namespace orlimo

@implementation OrlimoFakeObject

+ (void)load
{
    // For the whole run: messages to fakes are also sent outside of any other pool.
    static_cast<void>([[NSAutoreleasePool alloc] init]);
}

- (NSMethodSignature*)methodSignatureForSelector:(SEL)selector
{
    // In GNUstep's runtime a selector carries the types of its arguments.
    const char* const types = sel_getTypeEncoding(selector);
    return types == nullptr ? [super methodSignatureForSelector:selector]
                            : [NSMethodSignature signatureWithObjCTypes:types];
}

- (void)forwardInvocation:(NSInvocation*)invocation
{
    fake->receive(invocation);
}

@end

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

// What GNUstep's Foundation lacks or gets elsewhere.

// GNUstep takes the home folder from the user database only and would keep its files in the real
// one; this function replaces its own and follows the tests' HOME.
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
