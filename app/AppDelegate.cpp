#include "app/AppDelegate.h"

#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "capture/Preferences.h"
#include "platform/process/FatalStop.h"
#include "platform/threads/MainThread.h"

#include <utility>

namespace orlimo {

AppDelegate::AppDelegate(DelegateServices delegateServices)
    : services(std::move(delegateServices))
{
    requireMainThread();
}

void AppDelegate::applicationWillFinishLaunching()
{
    requireMainThread();
    writePreferenceDefaults(services.userDefaults);
    services.setLaunchAtLogin(true);
}

void AppDelegate::applicationDidFinishLaunching()
{
    requireMainThread();
    if (!services.hasFullDiskAccess()) {
        showHelperWindow();
    }
}

void AppDelegate::applicationWillBecomeActive()
{
    requireMainThread();
    if (message == nullptr) {
        fatalStop("the application became active without a capture controller");
    }
    static_cast<void>(message->checkMessages());
}

void AppDelegate::showHelperWindow()
{
    requireMainThread();
    auto content = std::make_unique<HelperView>(services.openUrl, services.symbols);
    const auto screen = services.mainScreenFrame();
    if (!screen) {
        return;
    }
    const QRectF area = services.fromSystemCoordinates(GuidanceWindow::contentAreaOn(*screen));
    auto guidance = std::make_unique<GuidanceWindow>(content.release(), area);
    guidance->show();
    guidance->activateWindow();
    secondaryWindow = std::move(guidance);
    services.orderFrontRegardless(*secondaryWindow);
}

} // namespace orlimo
