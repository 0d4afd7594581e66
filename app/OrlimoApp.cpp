#include "app/OrlimoApp.h"

#include "app/MenuBarScene.h"
#include "platform/process/LogLine.h"
#include "platform/threads/MainThread.h"

namespace orlimo {

OrlimoApp::OrlimoApp()
    : iconRenderer([] {
        return std::make_unique<ImageRenderer<MenuBarIcon>>(std::make_unique<MenuBarIcon>());
    })
    , controller(Message::create())
{
    writeLogLine("OrlimoApp init");
    controller->registFileObserver();
    appDelegate().message = controller;
}

std::unique_ptr<MenuBarScene> OrlimoApp::body() const
{
    requireMainThread();
    return std::make_unique<MenuBarScene>(controller);
}

} // namespace orlimo
