#pragma once

#include "platform/loginitem/ServiceError.h"

#include <functional>
#include <optional>

namespace orlimo {

/// State of the running program as a login item; the values are those of SMAppService.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but switched off by the user in the system's settings
    notFound = 3,         ///< the program's own file cannot be found
};

/// The running program as a login item of the system, which alone stores the registration: every
/// call queries it. Synchronous, except on a system that asks the user first: there a call without
/// error has sent the request, the status is that of the last response, and the handler is called
/// with the next one. No call waits for the user. Main thread.
class LoginItemService
{
public:
    /// Receives a result that arrived after the call: of registering or of unregistering, and the
    /// error if it failed.
    using ResponseHandler =
        std::function<void(bool registering, const std::optional<ServiceError>& error)>;

    LoginItemService() = default;
    LoginItemService(const LoginItemService&) = delete;
    LoginItemService& operator=(const LoginItemService&) = delete;
    virtual ~LoginItemService() = default;

    [[nodiscard]] virtual LoginItemStatus status() const = 0;

    /// Registers the program. If the user has switched it off, it stays switched off, which is no
    /// error. Returns the error if it fails.
    [[nodiscard]] virtual std::optional<ServiceError> registerItem() = 0;

    /// Ends the registration. Returns the error if it fails or the program was not registered.
    [[nodiscard]] virtual std::optional<ServiceError> unregisterItem() = 0;

    /// Sets the handler of results that arrive after the call. A synchronous service never calls
    /// it.
    virtual void setResponseHandler(const ResponseHandler& /*handler*/) {}
};

/// The running program's own. Lives to the end of the process.
[[nodiscard]] LoginItemService& mainAppService();

} // namespace orlimo
