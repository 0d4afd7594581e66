#include "platform/desktop/ActivationObserver.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

class ActivationObserverTest : public testing::Test
{
protected:
    int notifications = 0;
    ActivationObserver observer{[this] { ++notifications; }};
};

TEST_F(ActivationObserverTest, EachActivationIsReportedOnce)
{
    observer.launchingDidFinish();
    observer.activityDidChange(false);
    EXPECT_EQ(notifications, 0);
    for (const int expected : {1, 2}) {
        observer.activityDidChange(true);
        observer.activityDidChange(true);
        EXPECT_EQ(notifications, expected);
        observer.activityDidChange(false);
        observer.activityDidChange(false);
        EXPECT_EQ(notifications, expected);
    }
}

TEST_F(ActivationObserverTest, ActivationsDuringLaunchAreReportedAfterIt)
{
    for (int count = 0; count < 2; ++count) {
        observer.activityDidChange(true);
        observer.activityDidChange(false);
    }
    EXPECT_EQ(notifications, 0);
    observer.launchingDidFinish();
    EXPECT_EQ(notifications, 2);
}

TEST(ActivationObserver, ActivationWithinANotificationIsReported)
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
    observer.activityDidChange(true);
    observer.launchingDidFinish();
    EXPECT_EQ(notifications, 2);
}

} // namespace
} // namespace orlimo
