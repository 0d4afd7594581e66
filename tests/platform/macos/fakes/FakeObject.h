#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#import <Foundation/Foundation.h>

namespace orlimo {

/// A fake of an object of the system: accepts every message, records its selector and responds as
/// set by a test, or with zero. Main thread. Never destroyed; a fixture that uses any calls
/// `resetAll` at its end.
class FakeObject
{
public:
    using Response = std::function<void(NSInvocation*)>;

    /// The fake of that name. The class methods in FakeSystem.mm return the fake named after the
    /// class.
    [[nodiscard]] static FakeObject& named(const std::string& name);

    static void resetAll();

    /// To be cast to the class that it replaces.
    [[nodiscard]] id object() const { return receiver; }

    /// Sets what a message does besides being recorded.
    void responds(const std::string& selector, Response response)
    {
        responses[selector] = std::move(response);
    }

    /// `Value` must be exactly the message's result type.
    template <typename Value> void returns(const std::string& selector, Value value)
    {
        responds(selector, [value](NSInvocation* invocation) {
            Value result = value;
            [invocation setReturnValue:&result];
        });
    }

    /// An argument of a message, counted from 0.
    template <typename Value> static Value argument(NSInvocation* invocation, int index)
    {
        Value value{};
        [invocation getArgument:&value atIndex:index + 2];
        return value;
    }

    /// Stores the first argument of each such message in `value`, which must have exactly its type.
    template <typename Value> void records(const std::string& selector, Value& value)
    {
        responds(selector, [&value](NSInvocation* invocation) {
            value = argument<Value>(invocation, 0);
        });
    }

    std::string name;
    /// The selectors received, in order.
    std::vector<std::string> messages;

    /// Called by the object itself.
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
