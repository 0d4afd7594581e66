#include "app/AppDelegate.h"

#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "capture/Preferences.h"
#include "platform/desktop/Workspace.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/Await.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/OutputCapture.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <tuple>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppDelegateTest : public ViewTestBase
{
protected:
    [[nodiscard]] DelegateServices delegateServices()
    {
        return {
            .userDefaults = preferences,
            .setLaunchAtLogin =
                [this](bool enabled) {
                    loginItem.emplace_back(enabled ? "enable" : "disable");
                    writesBefore = preferences.dictionaryRepresentation().size();
                },
            .hasFullDiskAccess =
                [this] {
                    ++probes;
                    return hasAccess;
                },
            .mainScreenFrame = [this] { return screen; },
            .fromSystemCoordinates =
                [this](const QRectF& area) { return area.translated(0, systemOffset); },
            .orderFrontRegardless =
                [this](QWidget& window) {
                    EXPECT_EQ(delegate.secondaryWindow.get(), &window);
                    EXPECT_TRUE(window.isVisible());
                    ++raised;
                    orderFrontRegardless(window);
                },
            .openUrl = [](const QUrl&) { return true; },
            .symbols = {.draw = systemSymbol, .size = systemSymbolSize},
        };
    }

    bool hasAccess = true;
    int probes = 0;
    /// How many preferences were stored when launch at login was switched on.
    std::size_t writesBefore = 0;
    std::optional<QRect> screen = QRect(0, 0, 1920, 1080);
    /// How much lower Qt counts than the system.
    double systemOffset = 0;
    int raised = 0;
    AppDelegate delegate{delegateServices()};
};

// Before launching has finished

TEST_F(AppDelegateTest, StoresAbsentPreferencesBeforeItSwitchesLaunchAtLoginOnAtEveryStart)
{
    const OutputCapture output;
    delegate.applicationWillFinishLaunching();
    EXPECT_EQ(writesBefore, preference::all.size());
    for (const auto& [key, defaultValue] : preference::all) {
        EXPECT_TRUE(preferences.boolForKey(key));
        preferences.setBool(false, key);
    }
    delegate.applicationWillFinishLaunching();
    for (const auto& [key, defaultValue] : preference::all) {
        EXPECT_FALSE(preferences.boolForKey(key));
    }
    EXPECT_THAT(loginItem, ElementsAre("enable", "enable"));
    EXPECT_EQ(probes, 0);
    EXPECT_EQ(output.text(), "");
}

// The guidance window

TEST_F(AppDelegateTest, ShowsGuidanceWindowOnlyWithoutAccess)
{
    const OutputCapture output;
    EXPECT_EQ(delegate.secondaryWindow, nullptr);
    EXPECT_EQ(delegate.message, nullptr);
    EXPECT_THAT(preferences.calls(), IsEmpty());
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(probes, 1);
    EXPECT_EQ(delegate.secondaryWindow, nullptr);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
    hasAccess = false;
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(probes, 2);
    ASSERT_NE(delegate.secondaryWindow, nullptr);
    EXPECT_TRUE(delegate.secondaryWindow->isVisible());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), 1);
    EXPECT_EQ(delegate.secondaryWindow->findChildren<HelperView*>().size(), 1);
    EXPECT_EQ(delegate.window, nullptr);
    EXPECT_EQ(output.text(), "");
}

TEST_F(AppDelegateTest, CentersGuidanceWindowOnScreenSizeInFront)
{
    for (const auto& [frame, offset, origin] :
         {std::tuple(QRect(1920, -200, 1920, 1080), 0, QPoint(710, 290)),
          std::tuple(QRect(0, 0, 1367, 769), 0, QPoint(434, 135)),
          std::tuple(QRect(0, 0, 1920, 1080), -180, QPoint(710, 110))})
    {
        screen = frame;
        systemOffset = offset;
        delegate.showHelperWindow();
        EXPECT_EQ(delegate.secondaryWindow->geometry(), QRect(origin, QSize(500, 500)));
        EXPECT_TRUE(await([this] { return delegate.secondaryWindow->isActiveWindow(); }));
    }
}

TEST(GuidanceWindowPlacement, IsMiddleOfAnyScreenSize)
{
    const QSizeF size(500, 500);
    EXPECT_EQ(GuidanceWindow::contentAreaOn({0, 0, 500, 500}), QRectF({0, 0}, size));
    EXPECT_EQ(GuidanceWindow::contentAreaOn({70, 80, 2560, 1440}), QRectF({1030, 470}, size));
    EXPECT_EQ(GuidanceWindow::contentAreaOn({0, 0, 400, 300}), QRectF({-50, -100}, size));
    EXPECT_EQ(GuidanceWindow::contentAreaOn({0, 0, 1367, 769}), QRectF({433.5, 134.5}, size));
    EXPECT_EQ(GuidanceWindow::contentAreaOn({0, 0, 399, 299}), QRectF({-50.5, -100.5}, size));
}

TEST_F(AppDelegateTest, GivesGuidanceWindowTitleBarAndCloseButtonOnly)
{
    delegate.showHelperWindow();
    const QWidget& window = *delegate.secondaryWindow;
    constexpr Qt::WindowFlags decided = Qt::WindowType_Mask | Qt::WindowTitleHint |
                                        Qt::WindowCloseButtonHint | Qt::WindowMinMaxButtonsHint |
                                        Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    EXPECT_EQ(
        window.windowFlags() & decided,
        Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    EXPECT_EQ(window.windowTitle(), QString());
    EXPECT_FALSE(window.isModal());
}

TEST_F(AppDelegateTest, ShowsNoGuidanceWindowWithoutScreen)
{
    hasAccess = false;
    screen.reset();
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(delegate.secondaryWindow, nullptr);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

TEST_F(AppDelegateTest, RaisesAndHoldsNewGuidanceWindowAndKeepsClosedOne)
{
    delegate.showHelperWindow();
    const QPointer<QWidget> first = delegate.secondaryWindow.get();
    delegate.showHelperWindow();
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(raised, 2);
    const QPointer<QWidget> second = delegate.secondaryWindow.get();
    second->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(second.isNull());
    EXPECT_FALSE(second->isVisible());
}

// Activation

TEST_F(AppDelegateTest, RereadsMessagesOnceAtEachActivation)
{
    store.appendText("Your code is 482913.");
    delegate.message = watching();
    const OutputCapture output;
    for (int times = 1; times <= 3; ++times) {
        delegate.applicationWillBecomeActive();
        EXPECT_EQ(std::ranges::count(output.lines(), "ready to access disk"), times);
    }
    EXPECT_EQ(delegate.message->verificationCode(), "482913");
    EXPECT_THAT(clipboard.calls, IsEmpty());
    EXPECT_EQ(probes, 0);
}

TEST_F(AppDelegateTest, StopsWhenActivatedWithoutController)
{
    expectFatalStop(
        [this] { delegate.applicationWillBecomeActive(); },
        {},
        {.file = "app/AppDelegate.cpp",
         .reason = "the application became active without a capture controller"});
}

} // namespace
} // namespace orlimo
