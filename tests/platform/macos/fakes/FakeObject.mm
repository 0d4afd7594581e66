#include "tests/platform/macos/fakes/FakeObject.h"

namespace orlimo {

namespace {

std::map<std::string, FakeObject>& fakes()
{
    static auto& all = *new std::map<std::string, FakeObject>;
    return all;
}

} // namespace

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
