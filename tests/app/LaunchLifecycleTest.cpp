#include "app/LaunchLifecycle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;

/// What the launch event says at this moment.
std::string eventNow()
{
    const auto event = currentLaunchEvent();
    if (!event) {
        return "none";
    }
    if (event->eventId != fourCharacterCode("oapp")) {
        return "another";
    }
    return event->propertyData == fourCharacterCode("lgit") ? "oapp lgit" : "oapp";
}

/// Notes each turn with the launch event of its moment.
class LaunchEventRecorder final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { notes.push_back("will: " + eventNow()); }
    void applicationDidFinishLaunching() override { notes.push_back("did: " + eventNow()); }
    void applicationWillBecomeActive() override { notes.push_back("active: " + eventNow()); }

    std::vector<std::string> notes;
};

class LaunchLifecycleTest : public testing::Test
{
protected:
    LaunchEventRecorder delegate;
};

TEST_F(LaunchLifecycleTest, KeepTheLaunchEventUntilLaunchingHasFinished)
{
    LaunchLifecycle lifecycle(delegate, false);
    EXPECT_EQ(eventNow(), "oapp");
    lifecycle.applicationWillFinishLaunching();
    lifecycle.applicationDidFinishLaunching();
    EXPECT_EQ(eventNow(), "none");
    lifecycle.applicationWillBecomeActive();
    EXPECT_THAT(delegate.notes, ElementsAre("will: oapp", "did: oapp", "active: none"));
}

TEST_F(LaunchLifecycleTest, HaveTheWorkDoneThatWaitsForTheLaunch)
{
    LaunchLifecycle lifecycle(
        delegate, false, [this] { delegate.notes.push_back("work: " + eventNow()); });
    lifecycle.applicationWillFinishLaunching();
    lifecycle.applicationDidFinishLaunching();
    lifecycle.applicationWillBecomeActive();
    EXPECT_THAT(
        delegate.notes, ElementsAre("will: oapp", "did: oapp", "work: none", "active: none"));
}

TEST_F(LaunchLifecycleTest, SayThatALoginStartedTheProgram)
{
    LaunchLifecycle lifecycle(delegate, true);
    lifecycle.applicationWillFinishLaunching();
    lifecycle.applicationDidFinishLaunching();
    EXPECT_THAT(delegate.notes, ElementsAre("will: oapp lgit", "did: oapp lgit"));
    EXPECT_EQ(eventNow(), "none");
}

TEST_F(LaunchLifecycleTest, HandEachActivationOn)
{
    LaunchLifecycle lifecycle(delegate, false);
    lifecycle.applicationWillBecomeActive();
    lifecycle.applicationWillBecomeActive();
    EXPECT_THAT(delegate.notes, ElementsAre("active: oapp", "active: oapp"));
}

TEST_F(LaunchLifecycleTest, EndTheLaunchEventWithThemselves)
{
    EXPECT_EQ(eventNow(), "none");
    {
        const LaunchLifecycle lifecycle(delegate, true);
        EXPECT_EQ(eventNow(), "oapp lgit");
    }
    EXPECT_EQ(eventNow(), "none");
}

} // namespace
} // namespace orlimo
