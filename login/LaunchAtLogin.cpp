#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"
#include "platform/process/FatalStop.h"

#include <optional>
#include <utility>

namespace orlimo {

namespace {

std::optional<LoginServices>& storedServices()
{
    static std::optional<LoginServices> services;
    return services;
}

const LoginServices& installedServices()
{
    if (!storedServices()) {
        fatalStop("launch at login has no services");
    }
    return *storedServices();
}

void logFailure(bool enabling, const ServiceError& error)
{
    installedServices().logError(enabling ? "enable" : "disable", error.localizedDescription);
}

} // namespace

void LaunchAtLogin::install(LoginServices services)
{
    LoginItemService& service = services.service;
    storedServices().emplace(std::move(services));
    service.setResponseHandler([](bool registering, const std::optional<ServiceError>& error) {
        Q_EMIT observable().objectWillChange();
        if (error) {
            logFailure(registering, *error);
        }
    });
}

bool LaunchAtLogin::isEnabled()
{
    return installedServices().service.status() == LoginItemStatus::enabled;
}

void LaunchAtLogin::setEnabled(bool enabled)
{
    LoginItemService& service = installedServices().service;
    Q_EMIT observable().objectWillChange();
    if (enabled && service.status() == LoginItemStatus::enabled) {
        (void)service.unregisterItem();
    }
    if (const auto error = enabled ? service.registerItem() : service.unregisterItem()) {
        logFailure(enabled, *error);
    }
}

bool LaunchAtLogin::wasLaunchedAtLogin()
{
    const auto event = installedServices().currentLaunchEvent();
    return event && event->eventId == fourCharacterCode("oapp") &&
           event->propertyData == fourCharacterCode("lgit");
}

LaunchAtLogin::Observable& LaunchAtLogin::observable()
{
    static Observable shared;
    return shared;
}

} // namespace orlimo
