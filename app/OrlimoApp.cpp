#include "app/OrlimoApp.h"

#include "app/MenuBarScene.h"
#include "app/ModuleServices.h"
#include "platform/process/LogLine.h"
#include "platform/threads/MainThread.h"

namespace orlimo {

OrlimoApp::OrlimoApp(const Services& systemServices)
    : services(systemServices)
    , delegateAdaptor(delegateServices(services))
    , iconRenderer([] {
        return std::make_unique<ImageRenderer<MenuBarIcon>>(std::make_unique<MenuBarIcon>());
    })
    , controller(Message::create(captureServices(services)))
{
    writeLogLine("OrlimoApp init");
    controller->registFileObserver();
    appDelegate().message = controller;
}

std::unique_ptr<MenuBarScene> OrlimoApp::body() const
{
    requireMainThread();
    return std::make_unique<MenuBarScene>(controller, services);
}

} // namespace orlimo
