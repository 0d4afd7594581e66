#include "app/OrlimoApp.h"

#include "platform/LogLine.h"

namespace orlimo {

OrlimoApp::OrlimoApp()
    : controller(Message::create())
{
    writeLogLine("OrlimoApp init");
    controller->registFileObserver();
    delegate.message = controller;
}

} // namespace orlimo
