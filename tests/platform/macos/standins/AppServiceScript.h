#pragma once

#include <functional>

#import <ServiceManagement/ServiceManagement.h>

namespace orlimo {

/// What the system's login item service answers. What is not set succeeds, or is not registered.
/// Main thread.
struct AppServiceScript
{
    std::function<SMAppServiceStatus()> status;
    /// The error, or nil for success. May throw an NSException.
    std::function<NSError*()> registerItem;
    std::function<NSError*()> unregisterItem;
};

/// The one that is asked. A test gives it back as it found it.
[[nodiscard]] AppServiceScript& appServiceScript();

} // namespace orlimo
