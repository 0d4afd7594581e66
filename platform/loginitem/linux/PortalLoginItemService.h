#pragma once

#include "platform/loginitem/LoginItemService.h"
#include "platform/loginitem/linux/AutostartPortal.h"

#include <QDBusConnection>

#include <chrono>
#include <optional>

namespace orlimo {

/// The login item of a program in a sandbox, which only the desktop's portal can register. Main
/// thread.
///
/// The portal responds later and has no call for the current state, so the status is that of its
/// last response, and `notRegistered` before the first one. A user who refuses leaves
/// `requiresApproval`; a refusal, like every other failure, is an error for the response handler.
/// Whether the program was registered is unknown, so unregistering a program that is not registered
/// is no error here.
///
/// The portal handles several requests at once and in no order, so there is one at a time. Until
/// the portal has accepted it, further requests wait, and only the last of them is sent. A request
/// that it has accepted may never get a response, because the user gives none or the dialog is
/// gone: a later request closes it and is sent in its place.
class PortalLoginItemService final : public LoginItemService
{
public:
    /// How long the portal may take to accept a request before that is an error. It may have to be
    /// started first.
    static constexpr std::chrono::seconds defaultCallTimeout{25};

    explicit PortalLoginItemService(
        const QDBusConnection& sessionBus, std::chrono::milliseconds timeout = defaultCallTimeout);

    [[nodiscard]] LoginItemStatus status() const override { return lastStatus; }
    [[nodiscard]] std::optional<ServiceError> registerItem() override;
    [[nodiscard]] std::optional<ServiceError> unregisterItem() override;
    void setResponseHandler(const ResponseHandler& handler) override;

private:
    [[nodiscard]] std::optional<ServiceError> request(bool registered);
    void didReceiveResult(bool registering, const AutostartPortal::Result& result);

    AutostartPortal portal;
    ResponseHandler responseHandler = [](bool, const std::optional<ServiceError>&) {};
    LoginItemStatus lastStatus = LoginItemStatus::notRegistered;
    std::optional<bool> pendingRequest;
};

} // namespace orlimo
