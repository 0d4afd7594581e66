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

void expectStopOnAnotherThread(const std::function<void()>& work, const std::string& file)
{
    expectFatalStop(
        [&work] { std::thread(work).join(); },
        {},
        {.file = file, .reason = "called off the main thread"});
}

TEST_F(ViewThreads, StopMakingOfViewsElsewhere)
{
    const auto message = watching();
    const DrawnView label{.size = {140, 40}, .draw = [](QPainter&) {}};
    for (const auto& [file, work] : std::vector<std::pair<std::string, std::function<void()>>>{
             {"panel/PopupView.cpp", [&] { const PopupView panel(message, panelServices()); }},
             {"panel/StatusMenuView.cpp",
              [&] { const StatusMenuView menu(message, menuServices()); }},
             {"guidance/HelperView.cpp",
              [] { const HelperView view([](const QUrl&) { return true; }, {}); }},
             {"MenuBarIcon.cpp", [] { const MenuBarIcon icon; }},
             {"MenuBarIcon.cpp", [] { (void)MenuBarIcon::icon(); }},
             {"panel/CopyButtonStyle.cpp",
              [&] { (void)CopyButtonStyle::makeBody({.label = label}); }}})
    {
        expectStopOnAnotherThread(work, "app/" + file);
    }
}

TEST_F(ViewThreads, StopEventsElsewhere)
{
    PopupView panel(watching(), panelServices());
    expectStopOnAnotherThread(
        [&panel] {
            QShowEvent event;
            static_cast<QObject&>(panel).event(&event);
        },
        "app/panel/PopupView.cpp");
    CopyButton copy(QStringLiteral("Copy"));
    // The first event of a process makes Qt's pointing device.
    QHoverEvent entered(QEvent::HoverEnter, copy.pillArea().center(), QPointF(), QPointF(-1, -1));
    expectStopOnAnotherThread(
        [&] { static_cast<QObject&>(copy).event(&entered); }, "app/panel/CopyButton.cpp");
}

TEST_F(ViewThreads, StopLifecycleEventsElsewhere)
{
    FakeServices fakes;
    const auto services = orlimo::delegateServices(fakes.services);
    AppDelegate delegate(services);
    delegate.message = watching();
    for (const std::function<void()>& work : std::vector<std::function<void()>>{
             [&] { const AppDelegate elsewhere(services); },
             [&] { const OrlimoApp app(fakes.services); },
             [&] { delegate.applicationWillFinishLaunching(); },
             [&] { delegate.applicationDidFinishLaunching(); },
             [&] { delegate.applicationWillBecomeActive(); },
             [&] { delegate.showHelperWindow(); }})
    {
        expectStopOnAnotherThread(work, "app/AppDelegate.cpp");
    }
    const OutputCapture swallowed;
    const OrlimoApp app(fakes.services);
    expectStopOnAnotherThread([&app] { (void)app.body(); }, "app/OrlimoApp.cpp");
}

} // namespace
} // namespace orlimo
