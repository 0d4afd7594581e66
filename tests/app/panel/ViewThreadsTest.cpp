#include "app/AppDelegate.h"
#include "app/MenuBarIcon.h"
#include "app/OrlimoApp.h"
#include "app/guidance/HelperView.h"
#include "app/panel/CopyButton.h"
#include "app/panel/CopyButtonStyle.h"
#include "app/panel/PopupView.h"
#include "app/panel/StatusMenuView.h"
#include "platform/desktop/FrontWindow.h"
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

/// What the user sees and touches belongs to the main thread.
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

TEST_F(ViewThreads, StopAnAppearanceElsewhere)
{
    PopupView panel(watching(), panelServices());
    expectStopOnAnotherThread(
        [&panel] {
            QShowEvent event;
            static_cast<QObject&>(panel).event(&event);
        },
        "app/panel/PopupView.cpp");
}

TEST_F(ViewThreads, StopThePanelsMakingElsewhere)
{
    const auto message = watching();
    expectStopOnAnotherThread(
        [&] { const PopupView panel(message, panelServices()); }, "app/panel/PopupView.cpp");
}

TEST_F(ViewThreads, StopTheMenusMakingElsewhere)
{
    const auto message = watching();
    expectStopOnAnotherThread(
        [&] { const StatusMenuView menu(message, menuServices()); },
        "app/panel/StatusMenuView.cpp");
}

TEST_F(ViewThreads, StopTheGuidancesMakingElsewhere)
{
    expectStopOnAnotherThread(
        [] { const HelperView view([](const QUrl&) { return true; }, {}); },
        "app/guidance/HelperView.cpp");
}

TEST_F(ViewThreads, StopTheIconsMakingElsewhere)
{
    expectStopOnAnotherThread([] { const MenuBarIcon icon; }, "app/MenuBarIcon.cpp");
}

TEST_F(ViewThreads, StopTheTraysImageElsewhere)
{
    expectStopOnAnotherThread([] { (void)MenuBarIcon::icon(); }, "app/MenuBarIcon.cpp");
}

TEST_F(ViewThreads, StopTheCopyButtonsStyleElsewhere)
{
    expectStopOnAnotherThread(
        [] {
            (void)CopyButtonStyle::makeBody(
                {.label = {.size = {140, 40}, .draw = [](QPainter&) {}}});
        },
        "app/panel/CopyButtonStyle.cpp");
}

TEST_F(ViewThreads, StopAPointerElsewhere)
{
    CopyButton copy(QStringLiteral("Copy"));
    // The first event of a process makes the toolkit's pointing device.
    QHoverEvent entered(QEvent::HoverEnter, copy.pillArea().center(), QPointF(), QPointF(-1, -1));
    expectStopOnAnotherThread(
        [&] { static_cast<QObject&>(copy).event(&entered); }, "app/panel/CopyButton.cpp");
}

TEST_F(ViewThreads, StopTheApplicationsMakingElsewhere)
{
    expectStopOnAnotherThread(
        [this] { const AppDelegate delegate(delegateServices()); }, "app/AppDelegate.cpp");
    expectStopOnAnotherThread(
        [] { const OrlimoApp app(FakeServices().services); }, "app/AppDelegate.cpp");
}

TEST_F(ViewThreads, StopEachTurnOfTheApplicationElsewhere)
{
    AppDelegate delegate(delegateServices());
    delegate.message = watching();
    const std::string_view file = "app/AppDelegate.cpp";
    expectStopOnAnotherThread([&] { delegate.applicationWillFinishLaunching(); }, file);
    expectStopOnAnotherThread([&] { delegate.applicationDidFinishLaunching(); }, file);
    expectStopOnAnotherThread([&] { delegate.applicationWillBecomeActive(); }, file);
    expectStopOnAnotherThread([&] { delegate.showHelperWindow(); }, file);
}

} // namespace
} // namespace orlimo
