#include "platform/loginitem/linux/PortalLoginItemService.h"

#include <utility>

namespace orlimo {

namespace {

LoginItemStatus statusAfter(bool registering, bool isAutostarted)
{
    if (isAutostarted) {
        return LoginItemStatus::enabled;
    }
    return registering ? LoginItemStatus::requiresApproval : LoginItemStatus::notRegistered;
}

} // namespace

PortalLoginItemService::PortalLoginItemService(
    const QDBusConnection& sessionBus, std::chrono::milliseconds longestCall)
    : portal(sessionBus, longestCall)
{}

std::optional<ServiceError> PortalLoginItemService::registerItem()
{
    return wish(true);
}

std::optional<ServiceError> PortalLoginItemService::unregisterItem()
{
    return wish(false);
}

void PortalLoginItemService::setAnswerHandler(const AnswerHandler& handler)
{
    tell = handler;
}

std::optional<ServiceError> PortalLoginItemService::wish(bool registered)
{
    if (portal.isOpen()) {
        portal.takeBack();
        waitingWish.reset();
    }
    if (portal.isAsking()) {
        waitingWish = registered;
        return std::nullopt;
    }
    return portal.ask(registered, [this, registered](const AutostartPortal::Answer& answer) {
        wasAnswered(registered, answer);
    });
}

void PortalLoginItemService::wasAnswered(bool registering, const AutostartPortal::Answer& answer)
{
    if (answer.isAutostarted) {
        lastStatus = statusAfter(registering, *answer.isAutostarted);
    }
    const auto next = std::exchange(waitingWish, std::nullopt);
    if (!next) {
        tell(registering, answer.error);
        return;
    }
    // How the wish before it fared does not matter any more.
    if (const auto error = wish(*next)) {
        tell(*next, error);
    }
}

} // namespace orlimo
