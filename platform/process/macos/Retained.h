#pragma once

#include <utility>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Owns one reference to an Objective-C object and releases it on destruction. `Object` is the
/// pointer type, such as NSString*. The tree's Objective-C++ is compiled without automatic
/// reference counting.
template <typename Object> class Retained
{
public:
    Retained() = default;

    /// Takes over the caller's reference, as from alloc, copy or new.
    [[nodiscard]] static Retained adopt(Object owned) { return Retained(owned); }

    /// Adds a reference to an object with another owner.
    [[nodiscard]] static Retained retain(Object borrowed) { return Retained([borrowed retain]); }

    Retained(Retained&& other) noexcept
        : object(std::exchange(other.object, nil))
    {}
    Retained& operator=(Retained&& other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }
    Retained(const Retained&) = delete;
    Retained& operator=(const Retained&) = delete;
    ~Retained() { [object release]; }

    /// The object, still owned here; nil when there is none.
    [[nodiscard]] Object get() const { return object; }

    [[nodiscard]] explicit operator bool() const { return object != nil; }

private:
    explicit Retained(Object owned)
        : object(owned)
    {}

    Object object = nil;
};

} // namespace orlimo
