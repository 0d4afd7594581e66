#pragma once

#include <memory>

namespace orlimo {

/// Makes the application's delegate and keeps it for the application's lifetime. Main thread.
template <class Delegate> class ApplicationDelegateAdaptor
{
public:
    [[nodiscard]] Delegate& wrappedValue() const { return *delegate; }

private:
    std::unique_ptr<Delegate> delegate = std::make_unique<Delegate>();
};

} // namespace orlimo
