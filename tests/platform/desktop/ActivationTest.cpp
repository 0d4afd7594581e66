#include "platform/desktop/ActivationObserver.h"
#include "platform/desktop/ApplicationActivity.h"
#include "tests/support/Await.h"

#include <QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace orlimo {
namespace {

TEST(ActivationObserverTest, EachActivationIsReportedOnceAndNotBeforeTheLaunchHasFinished)
{
    int notifications = 0;
    ActivationObserver* self = nullptr;
    ActivationObserver observer([&] {
        if (++notifications == 1) {
            self->activityDidChange(false);
            self->activityDidChange(true);
        }
    });
    self = &observer;
    for (const bool isActive : {false, true, true, false, true}) {
        observer.activityDidChange(isActive);
        EXPECT_EQ(notifications, 0);
    }
    observer.launchingDidFinish();
    EXPECT_EQ(notifications, 3) << "two, and the one within the first notification";
    for (const bool isActive : {true, false, false}) {
        observer.activityDidChange(isActive);
        EXPECT_EQ(notifications, 3);
    }
    for (const bool isActive : {true, true}) {
        observer.activityDidChange(isActive);
        EXPECT_EQ(notifications, 4);
    }
}

void focus(QWidget& window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(await([&window] { return window.isActiveWindow(); }));
}

TEST(ApplicationActivityTest, ReportsTheStateAtTheStartAndEachChangeButNoMoveOfTheFocus)
{
    std::vector<bool> notifications;
    const auto notify = [&](bool active) { notifications.push_back(active); };
    QWidget window;
    QWidget other;
    const ApplicationActivity without(notify);
    EXPECT_EQ(notifications, std::vector<bool>{false});
    focus(window);
    EXPECT_TRUE(notifications.back());
    notifications.clear();
    const ApplicationActivity with(notify);
    EXPECT_EQ(notifications, std::vector<bool>{true});
    window.close();
    EXPECT_TRUE(await([&] { return !notifications.back(); }));
    focus(window);
    EXPECT_TRUE(notifications.back());
    notifications.clear();
    window.close();
    focus(other);
    runEventLoop(std::chrono::milliseconds(600));
    EXPECT_THAT(notifications, testing::Each(true));
}

} // namespace
} // namespace orlimo
