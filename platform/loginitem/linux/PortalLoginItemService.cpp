#include "platform/loginitem/linux/PortalLoginItemService.h"

#include <utility>

namespace orlimo {

namespace {

LoginItemStatus statusAfter(bool registering, bool isAutostartEnabled)
{
    if (isAutostartEnabled) {
        return LoginItemStatus::enabled;
    }
    return registering ? LoginItemStatus::requiresApproval : LoginItemStatus::notRegistered;
}

} // namespace

PortalLoginItemService::PortalLoginItemService(
    const QDBusConnection& sessionBus, std::chrono::milliseconds timeout)
    : portal(sessionBus, timeout)
{}

std::optional<ServiceError> PortalLoginItemService::registerItem()
{
    return request(true);
}

std::optional<ServiceError> PortalLoginItemService::unregisterItem()
{
    return request(false);
}

void PortalLoginItemService::setResponseHandler(const ResponseHandler& handler)
{
    responseHandler = handler;
}

std::optional<ServiceError> PortalLoginItemService::request(bool registered)
{
    if (portal.isOpen()) {
        portal.cancelRequest();
        pendingRequest.reset();
    }
    if (portal.isRequesting()) {
        pendingRequest = registered;
        return std::nullopt;
    }
    return portal.requestAutostart(
        registered, [this, registered](const AutostartPortal::Result& result) {
            didReceiveResult(registered, result);
        });
}

void PortalLoginItemService::didReceiveResult(
    bool registering, const AutostartPortal::Result& result)
{
    if (result.isAutostartEnabled) {
        lastStatus = statusAfter(registering, *result.isAutostartEnabled);
    }
    const auto next = std::exchange(pendingRequest, std::nullopt);
    if (!next) {
        responseHandler(registering, result.error);
        return;
    }
    // The result of the superseded request no longer matters.
    if (const auto error = request(*next)) {
        responseHandler(*next, error);
    }
}

} // namespace orlimo
