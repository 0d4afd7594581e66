#include "platform/desktop/ActivationObserver.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

class ActivationObserverTest : public testing::Test
{
protected:
    int told = 0;
    ActivationObserver observer{[this] { ++told; }};
};

TEST_F(ActivationObserverTest, TellsOfEachActivationOnce)
{
    observer.launchingDidFinish();
    EXPECT_EQ(told, 0);
    observer.activityDidChange(true);
    EXPECT_EQ(told, 1);
    observer.activityDidChange(false);
    EXPECT_EQ(told, 1);
    observer.activityDidChange(true);
    EXPECT_EQ(told, 2);
}

TEST_F(ActivationObserverTest, HearsNothingNewInARepetition)
{
    observer.launchingDidFinish();
    observer.activityDidChange(false);
    EXPECT_EQ(told, 0);
    observer.activityDidChange(true);
    observer.activityDidChange(true);
    EXPECT_EQ(told, 1);
    observer.activityDidChange(false);
    observer.activityDidChange(false);
    observer.activityDidChange(true);
    EXPECT_EQ(told, 2);
}

TEST_F(ActivationObserverTest, KeepsWhatComesBeforeTheEndOfLaunching)
{
    observer.activityDidChange(true);
    EXPECT_EQ(told, 0);
    observer.launchingDidFinish();
    EXPECT_EQ(told, 1);
    observer.activityDidChange(false);
    observer.activityDidChange(true);
    EXPECT_EQ(told, 2);
}

TEST_F(ActivationObserverTest, LosesNothingThatComesBeforeTheEndOfLaunching)
{
    observer.activityDidChange(true);
    observer.activityDidChange(false);
    observer.activityDidChange(true);
    observer.activityDidChange(false);
    observer.launchingDidFinish();
    EXPECT_EQ(told, 2);
}

TEST(ActivationObserver, TakesAnActivationWhileItTells)
{
    int told = 0;
    ActivationObserver* self = nullptr;
    ActivationObserver observer([&] {
        if (++told == 1) {
            self->activityDidChange(false);
            self->activityDidChange(true);
        }
    });
    self = &observer;
    observer.activityDidChange(true);
    observer.launchingDidFinish();
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace orlimo
