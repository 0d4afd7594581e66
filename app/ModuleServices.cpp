#include "app/ModuleServices.h"

#include "app/guidance/DiskAccess.h"
#include "login/LaunchAtLogin.h"
#include "platform/ApplicationIdentity.h"

namespace orlimo {

CaptureServices captureServices(const Services& services)
{
    const WatchServices watch{
        .mainQueue = services.mainQueue,
        .decisionQueue = services.backgroundQueue,
        .clock = services.clock,
        .makeVnodeSource = services.makeVnodeSource,
        .openFile = services.openFile};
    return {
        .database = Database::shared(services.libraryFolder),
        .userDefaults = services.userDefaults,
        .pasteboard = services.pasteboard,
        .libraryFolder = services.libraryFolder,
        .makeFileMonitor =
            [watch](const std::filesystem::path& file) { return FileMonitor::create(file, watch); },
    };
}

LoginServices loginServices(const Services& services)
{
    return {
        .service = services.loginItem,
        .logError = services.logLoginItemError,
        .currentLaunchEvent = services.currentLaunchEvent,
    };
}

DelegateServices delegateServices(const Services& services)
{
    return {
        .userDefaults = services.userDefaults,
        .setLaunchAtLogin = LaunchAtLogin::setEnabled,
        .hasFullDiskAccess =
            [userEntry = services.userEntry, canListDirectory = services.canListDirectory] {
                return hasFullDiskAccess(userEntry, canListDirectory);
            },
        .mainScreenFrame = services.mainScreenFrame,
        .fromSystemCoordinates = services.fromSystemCoordinates,
        .orderFrontRegardless = services.orderFrontRegardless,
        .openUrl = services.openUrl,
        .symbols = services.symbols,
    };
}

MenuServices menuServices(const Services& services)
{
    return {
        .panel =
            {
                .userDefaults = services.userDefaults,
                .pasteboard = services.pasteboard,
                .setLaunchAtLogin = LaunchAtLogin::setEnabled,
                .symbols = services.symbols,
            },
        .application = services.application,
        .openUrl = services.openUrl,
        .website = std::string(identity::website),
    };
}

} // namespace orlimo
