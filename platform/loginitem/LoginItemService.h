#pragma once

#include "platform/loginitem/ServiceError.h"

#include <functional>
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
/// asks it anew. Synchronous, but for a host that asks the user first: there a call that returns no
/// error has sent the question, the status is that of the last answer, and the handler is told when
/// the next one is here. No call waits for the user. Main thread.
class LoginItemService
{
public:
    /// Told of an answer that came after the call: what was asked for, to be registered or no
    /// longer to be, and why it is not so, where it is not.
    using ResponseHandler =
        std::function<void(bool registering, const std::optional<ServiceError>& error)>;

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

    /// Has `handler` told of answers that come later, in the place of the one before. A host that
    /// answers at once never calls it.
    virtual void setResponseHandler(const ResponseHandler& /*handler*/) {}
};

/// The running program's own. Lives to the end of the process.
[[nodiscard]] LoginItemService& mainAppService();

} // namespace orlimo
