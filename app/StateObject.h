#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace orlimo {

/// An object that belongs to the application's description and is built when it is first asked for.
/// Main thread.
template <class Object> class StateObject
{
public:
    explicit StateObject(std::function<std::unique_ptr<Object>()> objectBuilder)
        : builder(std::move(objectBuilder))
    {}

    [[nodiscard]] bool isBuilt() const { return object != nullptr; }

    [[nodiscard]] Object& wrappedValue()
    {
        if (object == nullptr) {
            object = builder();
        }
        return *object;
    }

private:
    std::function<std::unique_ptr<Object>()> builder;
    std::unique_ptr<Object> object;
};

} // namespace orlimo
