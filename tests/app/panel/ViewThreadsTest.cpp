#include "app/MenuBarIcon.h"
#include "app/MenuBarScene.h"
#include "app/ModuleServices.h"
#include "app/OrlimoApp.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CopyButton.h"
#include "app/panel/CopyButtonStyle.h"
#include "app/panel/PopupView.h"
#include "app/panel/StatusMenuView.h"
#include "tests/app/FakeServices.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/OutputCapture.h"

#include <QHoverEvent>
#include <QShowEvent>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using ViewThreads = ViewTestBase;

TEST_F(ViewThreads, StopWorkOffMainThread)
{
    FakeServices fakes;
    const auto message = watching();
    const DrawnView label{.size = {140, 40}, .draw = [](QPainter&) {}};
    PopupView panel(message, panelServices());
    CopyButton copy(QStringLiteral("Copy"));
    // The first event of a process makes Qt's pointing device.
    QHoverEvent entered(QEvent::HoverEnter, copy.pillArea().center(), QPointF(), QPointF(-1, -1));
    const auto services = orlimo::delegateServices(fakes.services);
    AppDelegate delegate(services);
    delegate.message = message;
    const OutputCapture swallowed;
    const OrlimoApp app(fakes.services);
    for (const auto& [file, work] : std::vector<std::pair<std::string, std::function<void()>>>{
             {"panel/PopupView.cpp", [&] { const PopupView other(message, panelServices()); }},
             {"panel/PopupView.cpp",
              [&] {
                  QShowEvent event;
                  static_cast<QObject&>(panel).event(&event);
              }},
             {"panel/StatusMenuView.cpp",
              [&] { const StatusMenuView menu(message, menuServices()); }},
             {"panel/CopyButton.cpp", [&] { static_cast<QObject&>(copy).event(&entered); }},
             {"panel/CopyButtonStyle.cpp",
              [&] { (void)CopyButtonStyle::makeBody({.label = label}); }},
             {"guidance/HelperView.cpp",
              [] { const HelperView view([](const QUrl&) { return true; }, {}); }},
             {"MenuBarIcon.cpp", [] { const MenuBarIcon icon; }},
             {"MenuBarIcon.cpp", [] { (void)MenuBarIcon::icon(); }},
             {"AppDelegate.cpp", [&] { const AppDelegate elsewhere(services); }},
             {"AppDelegate.cpp", [&] { const OrlimoApp other(fakes.services); }},
             {"AppDelegate.cpp", [&] { delegate.applicationWillFinishLaunching(); }},
             {"AppDelegate.cpp", [&] { delegate.applicationDidFinishLaunching(); }},
             {"AppDelegate.cpp", [&] { delegate.applicationWillBecomeActive(); }},
             {"AppDelegate.cpp", [&] { delegate.showHelperWindow(); }},
             {"OrlimoApp.cpp", [&] { (void)app.body(); }}})
    {
        expectFatalStop(
            [&work = work] { std::thread(work).join(); },
            {},
            {.file = "app/" + file, .reason = "called off the main thread"});
    }
}

} // namespace
} // namespace orlimo
