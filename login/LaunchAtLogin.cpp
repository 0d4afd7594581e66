#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"

#include <optional>

namespace orlimo {

namespace {

void logFailure(const LoginServices& services, bool enabling, const ServiceError& error)
{
    services.logError(enabling ? "enable" : "disable", error.localizedDescription);
}

} // namespace

bool LaunchAtLogin::isEnabled(const LoginServices& services)
{
    return services.service.status() == LoginItemStatus::enabled;
}

void LaunchAtLogin::setEnabled(bool enabled, const LoginServices& services)
{
    Q_EMIT observable().objectWillChange();
    if (enabled && services.service.status() == LoginItemStatus::enabled) {
        (void)services.service.unregisterItem();
    }
    if (const auto error =
            enabled ? services.service.registerItem() : services.service.unregisterItem())
    {
        logFailure(services, enabled, *error);
    }
}

void LaunchAtLogin::observeResponses(const LoginServices& services)
{
    services.service.setResponseHandler(
        [services](bool registering, const std::optional<ServiceError>& error) {
            Q_EMIT observable().objectWillChange();
            if (error) {
                logFailure(services, registering, *error);
            }
        });
}

bool LaunchAtLogin::wasLaunchedAtLogin(const LoginServices& services)
{
    const auto event = services.currentLaunchEvent();
    return event && event->eventId == fourCharacterCode("oapp") &&
           event->propertyData == fourCharacterCode("lgit");
}

LaunchAtLogin::Observable& LaunchAtLogin::observable()
{
    static Observable shared;
    return shared;
}

} // namespace orlimo
