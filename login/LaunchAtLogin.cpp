#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"

#include <memory>
#include <optional>

namespace orlimo {

namespace {

void logFailure(const LoginHost& host, bool enabling, const ServiceError& error)
{
    host.logger().error(
        "Failed to %s launch at login: %s",
        enabling ? "enable" : "disable",
        error.localizedDescription);
}

} // namespace

bool LaunchAtLogin::isEnabled(const LoginHost& host)
{
    return host.service.status() == LoginItemStatus::enabled;
}

void LaunchAtLogin::setEnabled(bool enabled, const LoginHost& host)
{
    Q_EMIT observable().objectWillChange();
    if (enabled && host.service.status() == LoginItemStatus::enabled) {
        (void)host.service.unregisterItem();
    }
    if (const auto error = enabled ? host.service.registerItem() : host.service.unregisterItem()) {
        logFailure(host, enabled, *error);
    }
}

void LaunchAtLogin::followAnswers(const LoginHost& host)
{
    host.service.setAnswerHandler(
        [host](bool registering, const std::optional<ServiceError>& error) {
            Q_EMIT observable().objectWillChange();
            if (error) {
                logFailure(host, registering, *error);
            }
        });
}

bool LaunchAtLogin::wasLaunchedAtLogin(const LoginHost& host)
{
    const auto event = host.currentLaunchEvent();
    return event && event->eventId == fourCharacterCode("oapp") &&
           event->propertyData == fourCharacterCode("lgit");
}

LaunchAtLogin::Observable& LaunchAtLogin::observable()
{
    static Observable shared;
    return shared;
}

UnifiedLog& LaunchAtLogin::logger()
{
    static const auto log = UnifiedLog::create("app.orlimo.Orlimo.LaunchAtLogin", "main");
    return *log;
}

} // namespace orlimo
