#pragma once

#include <utility>

#import <dispatch/dispatch.h>

namespace orlimo {

/// Owns one reference to an object of the dispatch library and releases it on destruction. `Object`
/// is the pointer type, such as dispatch_queue_t.
template <typename Object> class DispatchObject
{
public:
    /// Takes over the caller's reference, as from a create function.
    [[nodiscard]] static DispatchObject adopt(Object owned) { return DispatchObject(owned); }

    /// Adds a reference to an object with another owner.
    [[nodiscard]] static DispatchObject retain(Object borrowed)
    {
        // Unqualified, here and below: the system's header makes macros of both functions.
        dispatch_retain(borrowed);
        return DispatchObject(borrowed);
    }

    DispatchObject(DispatchObject&& other) noexcept
        : object(std::exchange(other.object, nullptr))
    {}
    DispatchObject& operator=(DispatchObject&& other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;
    ~DispatchObject()
    {
        if (object != nullptr) {
            dispatch_release(object);
        }
    }

    /// The object, still owned here; null when there is none.
    [[nodiscard]] Object get() const { return object; }

private:
    explicit DispatchObject(Object owned)
        : object(owned)
    {}

    Object object;
};

} // namespace orlimo
