// The system keeps preferences in one process for all, under the identifier of the program's
// bundle: what one process writes, the others read. GNUstep keeps them in files named after the
// program, and reads and writes those when it is told to; so it is given the name, and told each
// time.

#include "platform/ApplicationIdentity.h"
#include "tests/platform/macos/standins/MethodReplacement.h"

#include <string>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

using Opener = NSUserDefaults* (*)(id, SEL);
using BoolReader = BOOL (*)(NSUserDefaults*, SEL, NSString*);
using BoolWriter = void (*)(NSUserDefaults*, SEL, BOOL, NSString*);
using DictionaryReader = NSDictionary* (*)(NSUserDefaults*, SEL);

Opener open = nullptr;
BoolReader readBool = nullptr;
BoolWriter writeBool = nullptr;
DictionaryReader readDictionary = nullptr;

NSUserDefaults* openUnderIdentifier(id defaultsClass, SEL selector)
{
    static const std::string identifier(identity::applicationIdentifier);
    [[NSProcessInfo processInfo] setProcessName:[NSString stringWithUTF8String:identifier.c_str()]];
    return open(defaultsClass, selector);
}

BOOL readBoolAfresh(NSUserDefaults* defaults, SEL selector, NSString* key)
{
    [defaults synchronize];
    return readBool(defaults, selector, key);
}

void writeBoolAtOnce(NSUserDefaults* defaults, SEL selector, BOOL value, NSString* key)
{
    [defaults synchronize];
    writeBool(defaults, selector, value, key);
    [defaults synchronize];
}

NSDictionary* readDictionaryAfresh(NSUserDefaults* defaults, SEL selector)
{
    [defaults synchronize];
    return readDictionary(defaults, selector);
}

} // namespace
} // namespace orlimo

@interface NSUserDefaults (Synchronous)
@end

@implementation NSUserDefaults (Synchronous)

+ (void)load
{
    using namespace orlimo;
    const auto method = [self](SEL selector) { return class_getInstanceMethod(self, selector); };
    open = replaceMethod(
        class_getClassMethod(self, @selector(standardUserDefaults)), openUnderIdentifier);
    readBool = replaceMethod(method(@selector(boolForKey:)), readBoolAfresh);
    writeBool = replaceMethod(method(@selector(setBool:forKey:)), writeBoolAtOnce);
    readDictionary =
        replaceMethod(method(@selector(dictionaryRepresentation)), readDictionaryAfresh);
}

@end
