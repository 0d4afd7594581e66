#include "app/LaunchLifecycle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

/// What the launch event says at this moment.
std::string eventNow()
{
    const auto event = currentLaunchEvent();
    if (!event) {
        return "none";
    }
    EXPECT_EQ(event->eventId, fourCharacterCode("oapp"));
    return event->propertyData == fourCharacterCode("lgit") ? "at login" : "by user";
}

/// Records each lifecycle event with the launch event at that moment.
class LaunchEventRecorder final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { notes.push_back("will: " + eventNow()); }
    void applicationDidFinishLaunching() override { notes.push_back("did: " + eventNow()); }
    void applicationWillBecomeActive() override { notes.push_back("active: " + eventNow()); }

    std::vector<std::string> notes;
};

TEST(LaunchLifecycle, KeepsLaunchEventUntilLaunchingHasFinished)
{
    for (const bool atLogin : {false, true}) {
        const std::string event = atLogin ? "at login" : "by user";
        LaunchEventRecorder delegate;
        LaunchLifecycle lifecycle(
            delegate, atLogin, [&] { delegate.notes.push_back("launched: " + eventNow()); });
        EXPECT_EQ(eventNow(), event);
        lifecycle.applicationWillFinishLaunching();
        lifecycle.applicationWillBecomeActive();
        lifecycle.applicationDidFinishLaunching();
        lifecycle.applicationWillBecomeActive();
        EXPECT_THAT(
            delegate.notes,
            testing::ElementsAre(
                "will: " + event,
                "active: " + event,
                "did: " + event,
                "launched: none",
                "active: none"));
    }
}

TEST(LaunchLifecycle, EndsLaunchEventWhenDestroyed)
{
    LaunchEventRecorder delegate;
    for (const bool isFinished : {true, false}) {
        LaunchLifecycle lifecycle(delegate, true);
        EXPECT_EQ(eventNow(), "at login");
        if (isFinished) {
            // Without a callback.
            lifecycle.applicationDidFinishLaunching();
        }
    }
    EXPECT_EQ(eventNow(), "none");
}

} // namespace
} // namespace orlimo
