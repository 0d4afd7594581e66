#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Stands in the place of an object of the system: takes every message, notes its selector and
/// responds as a test says, or else with zero. Main thread. Never destroyed; a fixture that uses
/// any has all of them forget what they know, by `resetAll`.
class FakeObject
{
public:
    using Response = std::function<void(NSInvocation*)>;

    /// The one of a name. The class methods that FakeSystem.mm has in the place of a class's own
    /// lead to the one with the name of the class.
    [[nodiscard]] static FakeObject& named(const std::string& name);

    static void resetAll();

    /// To be cast to the class that it stands for.
    [[nodiscard]] id object() const { return receiver; }

    /// What a message is to do besides being noted.
    void responds(const std::string& selector, Response response)
    {
        responses[selector] = std::move(response);
    }

    /// `Value` is the type of the result exactly as the message has it.
    template <typename Value> void returns(const std::string& selector, Value value)
    {
        responds(selector, [value](NSInvocation* invocation) {
            Value result = value;
            [invocation setReturnValue:&result];
        });
    }

    /// The argument of a message, counted from 0.
    template <typename Value> static Value argument(NSInvocation* invocation, int index)
    {
        Value value{};
        [invocation getArgument:&value atIndex:index + 2];
        return value;
    }

    /// Keeps the first argument of each such message in `value`, which has exactly its type.
    template <typename Value> void records(const std::string& selector, Value& value)
    {
        responds(selector, [&value](NSInvocation* invocation) {
            value = argument<Value>(invocation, 0);
        });
    }

    std::string name;
    /// The selectors of what was received, in their order.
    std::vector<std::string> messages;

    /// For the object itself.
    void receive(NSInvocation* invocation);

private:
    id receiver = nil;
    std::map<std::string, Response> responses;
};

} // namespace orlimo

/// The object of a FakeObject. A test may add a method whose arguments cannot be forwarded.
@interface OrlimoFakeObject : NSObject {
@public
    orlimo::FakeObject* fake;
}
@end
