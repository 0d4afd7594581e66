#include "app/AppDelegate.h"
#include "app/MenuBarIcon.h"
#include "app/OrlimoApp.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CopyButton.h"
#include "app/panel/CopyButtonStyle.h"
#include "app/panel/PopupView.h"
#include "app/panel/StatusMenuView.h"
#include "platform/desktop/Workspace.h"
#include "tests/app/FakeServices.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/FatalStopExpectation.h"

#include <QHoverEvent>
#include <QShowEvent>
#include <gtest/gtest.h>

#include <functional>
#include <string_view>
#include <thread>

namespace orlimo {
namespace {

/// Views belong to the main thread.
class ViewThreads : public ViewTestBase
{
protected:
    static void expectStopOnAnotherThread(const std::function<void()>& work, std::string_view file)
    {
        expectFatalStop(
            [&work] { std::thread(work).join(); },
            {},
            {.file = file, .reason = "called off the main thread"});
    }

    [[nodiscard]] DelegateServices delegateServices()
    {
        return {
            .userDefaults = preferences,
            .setLaunchAtLogin = [](bool) {},
            .hasFullDiskAccess = [] { return true; },
            .mainScreenFrame = [] { return std::nullopt; },
            .fromSystemCoordinates = [](const QRectF& area) { return area; },
            .orderFrontRegardless = [](QWidget& window) { orderFrontRegardless(window); },
            .openUrl = [](const QUrl&) { return true; },
            .symbols = {.draw = systemSymbol, .size = systemSymbolSize},
        };
    }
};

TEST_F(ViewThreads, StopMakingOfViewsElsewhere)
{
    const auto message = watching();
    expectStopOnAnotherThread(
        [&] { const PopupView panel(message, panelServices()); }, "app/panel/PopupView.cpp");
    expectStopOnAnotherThread(
        [&] { const StatusMenuView menu(message, menuServices()); },
        "app/panel/StatusMenuView.cpp");
    expectStopOnAnotherThread(
        [] { const HelperView view([](const QUrl&) { return true; }, {}); },
        "app/guidance/HelperView.cpp");
    expectStopOnAnotherThread([] { const MenuBarIcon icon; }, "app/MenuBarIcon.cpp");
    expectStopOnAnotherThread([] { (void)MenuBarIcon::icon(); }, "app/MenuBarIcon.cpp");
    expectStopOnAnotherThread(
        [] {
            (void)CopyButtonStyle::makeBody(
                {.label = {.size = {140, 40}, .draw = [](QPainter&) {}}});
        },
        "app/panel/CopyButtonStyle.cpp");
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
    const std::string_view file = "app/AppDelegate.cpp";
    expectStopOnAnotherThread([this] { const AppDelegate delegate(delegateServices()); }, file);
    expectStopOnAnotherThread([] { const OrlimoApp app(FakeServices().services); }, file);
    AppDelegate delegate(delegateServices());
    delegate.message = watching();
    expectStopOnAnotherThread([&] { delegate.applicationWillFinishLaunching(); }, file);
    expectStopOnAnotherThread([&] { delegate.applicationDidFinishLaunching(); }, file);
    expectStopOnAnotherThread([&] { delegate.applicationWillBecomeActive(); }, file);
    expectStopOnAnotherThread([&] { delegate.showHelperWindow(); }, file);
}

} // namespace
} // namespace orlimo
