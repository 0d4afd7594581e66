#include "platform/loginitem/linux/PortalLoginItemService.h"
#include "platform/loginitem/linux/XdgLoginItemService.h"

#include <QDBusConnection>

#include <system_error>

namespace orlimo {

std::unique_ptr<LoginItemService> makeLoginItemService(const std::filesystem::path& sandboxMarker)
{
    std::error_code unknown;
    if (std::filesystem::exists(sandboxMarker, unknown)) {
        return std::make_unique<PortalLoginItemService>(QDBusConnection::sessionBus());
    }
    return std::make_unique<XdgLoginItemService>();
}

LoginItemService& mainAppService()
{
    static const auto service = makeLoginItemService("/.flatpak-info");
    return *service;
}

} // namespace orlimo
