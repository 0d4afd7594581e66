#pragma once

#include <memory>
#include <utility>

namespace orlimo {

/// Makes the application's delegate and keeps it for the application's lifetime. Main thread.
template <class Delegate> class ApplicationDelegateAdaptor
{
public:
    /// Makes it of `arguments`.
    template <class... Arguments>
    explicit ApplicationDelegateAdaptor(Arguments&&... arguments)
        : delegate(std::make_unique<Delegate>(std::forward<Arguments>(arguments)...))
    {}

    [[nodiscard]] Delegate& wrappedValue() const { return *delegate; }

private:
    std::unique_ptr<Delegate> delegate;
};

} // namespace orlimo
