#include "login/LaunchAtLogin.h"

#include "login/LaunchAtLoginObservable.h"

#include <memory>
#include <optional>

namespace orlimo {

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
        host.logger().error(
            "Failed to %s launch at login: %s",
            enabled ? "enable" : "disable",
            error->localizedDescription);
    }
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
