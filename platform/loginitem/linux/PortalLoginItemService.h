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
/// The portal answers later and cannot be asked how things stand, so the status is what its last
/// answer said and `notRegistered` before the first one. A user who refuses leaves
/// `requiresApproval`; that, like everything else that keeps a wish from coming true, is an error
/// for the answer handler. Whether the program was registered is unknown, so that ending the
/// registration of a program without one is no error here.
///
/// The portal works on several questions at once and in no order. So there is one at a time: what
/// is asked for until the portal has accepted it waits, and only the last of it is asked. A
/// question that it has accepted may stay without an answer for ever, be it that the user does not
/// give one or that there is nothing left to give it to: a later wish takes it back and is asked in
/// its place.
class PortalLoginItemService final : public LoginItemService
{
public:
    /// How long the portal may take to accept a question before that counts as an error. It may
    /// have to be started first.
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
