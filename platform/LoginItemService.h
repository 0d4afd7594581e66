#pragma once

#include "platform/ServiceError.h"

#include <optional>

namespace orlimo {

/// Where the running program stands as a login item; the values are the host services' own.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but switched off by the user in the system's settings
    notFound = 3,         ///< the program's own file cannot be found
};

/// The running program as a login item of its host, which alone keeps the registration: every call
/// asks it anew. Synchronous. Main thread.
class LoginItemService
{
public:
    LoginItemService() = default;
    LoginItemService(const LoginItemService&) = delete;
    LoginItemService& operator=(const LoginItemService&) = delete;
    virtual ~LoginItemService() = default;

    [[nodiscard]] virtual LoginItemStatus status() const = 0;

    /// Has the program started at each login. What the user has switched off stays switched off,
    /// which is no error. The error, when it cannot be done.
    [[nodiscard]] virtual std::optional<ServiceError> registerItem() = 0;

    /// Ends that. The error, when it cannot be done or the program was not registered.
    [[nodiscard]] virtual std::optional<ServiceError> unregisterItem() = 0;
};

/// The running program's own. Lives to the end of the process.
[[nodiscard]] LoginItemService& mainAppService();

} // namespace orlimo
